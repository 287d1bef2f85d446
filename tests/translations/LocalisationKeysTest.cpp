// SPDX-License-Identifier: MIT
// Hosts translate Corvane's texts by their published ids. A translator that knows exactly those ids, and
// turns each into a marker naming it, shows whether every alert, label and error text is looked up under
// the right id and nests its parts as it should: a misspelt id falls back to English and fails here.
#include "Corvane/differences/StyleLabel.h"
#include "Corvane/differences/ThemeDifferencesError.h"
#include "Corvane/module/TextError.h"
#include "Corvane/presentation/Alerts.h"
#include "Corvane/sources/GitError.h"
#include "Corvane/themes/JSONDecodingError.h"
#include "Corvane/ui/ThemeCellView.h"

#include "presentation/AlertAnswerer.h"

#include <QPushButton>
#include <QTranslator>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;

namespace {

// The published ids, each with the number of "%@" its text fills.
const QHash<QString, int> publishedIds = {
    {u"corvane.fetch-failed.title"_s, 0},
    {u"corvane.fetch-failed.message"_s, 0},
    {u"corvane.fetch-failed.close-updater"_s, 0},
    {u"corvane.fetch-failed.retry"_s, 0},
    {u"corvane.copying-failed.title"_s, 0},
    {u"corvane.copying-failed.message"_s, 1},
    {u"corvane.copying-failed.continue"_s, 0},
    {u"corvane.copying-failed.resolve"_s, 0},
    {u"corvane.deleting-local-repo-failed.title"_s, 0},
    {u"corvane.deleting-local-repo-failed.message"_s, 0},
    {u"corvane.deleting-local-repo-failed.continue"_s, 0},
    {u"corvane.deleting-local-repo-failed.resolve"_s, 0},
    {u"corvane.deleting-installed-themes-failed.title"_s, 0},
    {u"corvane.deleting-installed-themes-failed.message"_s, 0},
    {u"corvane.deleting-installed-themes-failed.continue"_s, 0},
    {u"corvane.deleting-installed-themes-failed.resolve"_s, 0},
    {u"corvane.style.light"_s, 0},
    {u"corvane.style.dark"_s, 0},
    {u"corvane.theme.install"_s, 0},
    {u"corvane.theme.update"_s, 0},
    {u"corvane.ThemeDecodingError.base"_s, 1},
    {u"corvane.JSONDecodingError.base"_s, 1},
    {u"corvane.JSONDecodingError.dataReadingFailed"_s, 2},
    {u"corvane.JSONDecodingError.jsonDecodingFailed"_s, 2},
    {u"corvane.RemoteThemeFetchingError.base"_s, 1},
    {u"corvane.RemoteThemeFetchingError.repositoryError"_s, 1},
    {u"corvane.LocalThemeFetchingError.base"_s, 1},
    {u"corvane.LocalThemeFetchingError.fileError"_s, 1},
    {u"corvane.ThemeDifferencesError.base"_s, 1},
};

// "[id]", or "[id %@ %@]" with the id's placeholders.
QString marker(const QString& id)
{
    QString text = u'[' + id;
    for (int i = 0; i < publishedIds.value(id); ++i)
        text += u" %@"_s;
    return text + u']';
}

// The marker with its placeholders filled in order.
QString marked(const QString& id, const QStringList& arguments = {})
{
    QString text = marker(id);
    for (const QString& argument : arguments)
        text.replace(text.indexOf(u"%@"), 2, argument);
    return text;
}

class MarkingTranslator final : public QTranslator {
public:
    QString translate(const char*, const char* sourceText, const char*, int) const override
    {
        const QString id = QString::fromUtf8(sourceText);
        return publishedIds.contains(id) ? marker(id) : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class LocalisationKeysTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(QCoreApplication::installTranslator(&m_translator)); }
    void cleanupTestCase() { QCoreApplication::removeTranslator(&m_translator); }

    void alerts_data()
    {
        QTest::addColumn<std::function<void()>>("show");
        QTest::addColumn<QString>("name"); // the ids' middle part
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("detail");
        QTest::addColumn<QString>("firstButton"); // the id's last part
        const TextError error{u"gone"_s};
        QTest::newRow("fetch failed") << std::function<void()>([=] { showFetchFailedAlert(error); }) << "fetch-failed"
                                      << marked(u"corvane.fetch-failed.message"_s) << "gone" << "close-updater";
        QTest::newRow("copying failed")
            << std::function<void()>([=] { showCopyingFailedAlert(u"100% %@.theme.json"_s, error); })
            << "copying-failed" << marked(u"corvane.copying-failed.message"_s, {u"100% %@.theme.json"_s})
            << "The operation couldn't be completed. (Corvane.CopyingThemeFailed error 1.)" << "continue";
        QTest::newRow("deleting the clone failed") << std::function<void()>([] { showDeletingLocalRepoFailedAlert(); })
                                                   << "deleting-local-repo-failed"
                                                   << marked(u"corvane.deleting-local-repo-failed.message"_s) << ""
                                                   << "continue";
        QTest::newRow("deleting installed themes failed")
            << std::function<void()>([] { showDeletingInstalledThemesFailedAlert(); }) << "deleting-installed-themes-failed"
            << marked(u"corvane.deleting-installed-themes-failed.message"_s) << "" << "continue";
    }

    void alerts()
    {
        QFETCH(std::function<void()>, show);
        QFETCH(QString, name);
        QFETCH(QString, message);
        QFETCH(QString, detail);
        QFETCH(QString, firstButton);
        AlertAnswerer answerer({AlertAnswerer::Answer::first});
        show();
        const QString prefix = "corvane."_L1 + name + u'.';
        QCOMPARE(answerer.seen().value(0), QStringList({marked(prefix + "title"_L1), message, detail,
                                                        marked(prefix + firstButton),
                                                        marked(prefix + (name == "fetch-failed"_L1 ? "retry"_L1 : "resolve"_L1))}));
    }

    void labels()
    {
        QCOMPARE(styleLabel(Theme::Style::light), marked(u"corvane.style.light"_s));
        QCOMPARE(styleLabel(Theme::Style::dark), marked(u"corvane.style.dark"_s));
        ThemeCellView cell;
        ThemeEntry entry{u"Ember"_s, u"Dark"_s, u"Ann"_s, std::nullopt, u"1.0.0"_s, {}};
        cell.configure(entry);
        QCOMPARE(cell.updateButton()->text(), marked(u"corvane.theme.install"_s));
        entry.installedVersion = u"0.9.0"_s;
        cell.configure(entry);
        QCOMPARE(cell.updateButton()->text(), marked(u"corvane.theme.update"_s));
    }

    void errorTexts_data()
    {
        QTest::addColumn<AnyError>("error");
        QTest::addColumn<QString>("text");
        const QString path = u"/themes/a b%.theme.json"_s;
        const QUrl file = QUrl::fromLocalFile(path);
        const TextError inner{u"inner"_s};
        const auto decoding = [](const QString& text) { return marked(u"corvane.ThemeDecodingError.base"_s, {text}); };
        const auto json = [](const QString& text) { return marked(u"corvane.JSONDecodingError.base"_s, {text}); };
        const auto differences = [](const QString& text) { return marked(u"corvane.ThemeDifferencesError.base"_s, {text}); };
        const auto remote = [](const QString& text) { return marked(u"corvane.RemoteThemeFetchingError.base"_s, {text}); };
        const auto local = [](const QString& text) { return marked(u"corvane.LocalThemeFetchingError.base"_s, {text}); };

        const ThemeDecodingError unreadable{JSONDecodingError(JSONDecodingError::DataReadingFailed{file, inner})};
        const ThemeDecodingError undecodable{JSONDecodingError(JSONDecodingError::JSONDecodingFailed{file, inner})};
        QTest::newRow("data reading failed")
            << AnyError(unreadable)
            << decoding(json(marked(u"corvane.JSONDecodingError.dataReadingFailed"_s, {path, u"inner"_s})));
        QTest::newRow("JSON decoding failed")
            << AnyError(undecodable)
            << decoding(json(marked(u"corvane.JSONDecodingError.jsonDecodingFailed"_s, {path, u"inner"_s})));
        QTest::newRow("remote: repository error")
            << AnyError(ThemeDifferencesError(ThemeDifferencesError::RemoteFetchingFailed{
                   RemoteThemeFetchingError(RemoteThemeFetchingError::RepositoryError{GitError(-3, 2, "offline")})}))
            << differences(remote(marked(u"corvane.RemoteThemeFetchingError.repositoryError"_s, {u"offline"_s})));
        QTest::newRow("remote: theme decoding failed")
            << AnyError(ThemeDifferencesError(ThemeDifferencesError::RemoteFetchingFailed{
                   RemoteThemeFetchingError(RemoteThemeFetchingError::ThemeDecodingFailed{ThemeDecodingError{inner}})}))
            << differences(remote(decoding(u"inner"_s)));
        QTest::newRow("local: file error")
            << AnyError(ThemeDifferencesError(ThemeDifferencesError::LocalFetchingFailed{
                   LocalThemeFetchingError(LocalThemeFetchingError::FileError{inner})}))
            << differences(local(marked(u"corvane.LocalThemeFetchingError.fileError"_s, {u"inner"_s})));
        QTest::newRow("local: decoding error")
            << AnyError(ThemeDifferencesError(ThemeDifferencesError::LocalFetchingFailed{
                   LocalThemeFetchingError(LocalThemeFetchingError::DecodingError{undecodable})}))
            << differences(local(decoding(json(marked(u"corvane.JSONDecodingError.jsonDecodingFailed"_s, {path, u"inner"_s})))));
    }

    void errorTexts()
    {
        QFETCH(AnyError, error);
        QTEST(error.errorDescription(), "text");
    }

private:
    MarkingTranslator m_translator;
};

QTEST_MAIN(LocalisationKeysTest)
#include "LocalisationKeysTest.moc"
