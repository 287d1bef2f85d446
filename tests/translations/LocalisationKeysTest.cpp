// SPDX-License-Identifier: MIT
// Hosts translate Corvane's texts by their ids. A translator that turns every id of the translation
// template into a marker naming it shows whether each alert, label and error text is looked up under
// the right id and nests its parts as it should: a misspelt id falls back to English and fails here.
#include "Corvane/differences/StyleLabel.h"
#include "Corvane/differences/ThemeDifferencesError.h"
#include "Corvane/module/TextError.h"
#include "Corvane/ui/Alerts.h"
#include "Corvane/sources/GitError.h"
#include "Corvane/sources/RepositoryTimeOut.h"
#include "Corvane/themes/JSONDecodingError.h"
#include "Corvane/themes/ThemeJsonParser.h"
#include "Corvane/ui/ThemeCellView.h"

#include "Catalogue.h"
#include "presentation/AlertAnswerer.h"

#include <QPushButton>
#include <QTranslator>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;

namespace {

// Every id of the translation template, with the highest numbered marker ("%1", "%2", ...) its English text fills.
QHash<QString, int> templateIds()
{
    QHash<QString, int> ids;
    const auto catalogue = readCatalogue(sourceFile(u"translations/corvane.ts"_s));
    for (auto message = catalogue.cbegin(); message != catalogue.cend(); ++message) {
        int highest = 0; // "%@", left over from unnumbered texts, counts as none
        for (const QString& marker : markers(message->source))
            highest = std::max(highest, marker.mid(1).toInt());
        ids.insert(message.key(), highest);
    }
    return ids;
}

const QHash<QString, int>& ids()
{
    static const QHash<QString, int> all = templateIds();
    return all;
}

// "[id]", or "[id %1 %2]" with the id's markers, each argument in place of its marker.
QString marked(const QString& id, const QStringList& arguments = {})
{
    QString text = u'[' + id;
    for (int i = 0; i < ids().value(id); ++i)
        text += u' ' + (i < arguments.size() ? arguments[i] : u'%' + QString::number(i + 1));
    return text + u']';
}

class MarkingTranslator final : public QTranslator {
public:
    QString translate(const char*, const char* sourceText, const char*, int) const override
    {
        const QString id = QString::fromUtf8(sourceText);
        return ids().contains(id) ? marked(id) : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class LocalisationKeysTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(ids().size() > 30);
        QVERIFY(QCoreApplication::installTranslator(&m_translator));
    }
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
            << std::function<void()>([=] { showCopyingFailedAlert(u"100% %1.theme.json"_s, error); })
            << "copying-failed" << marked(u"corvane.copying-failed.message"_s, {u"100% %1.theme.json"_s})
            << marked(u"corvane.generic-error.description"_s, {u"Corvane.CopyingThemeFailed"_s, u"1"_s}) << "continue";
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
        // A text that counts is looked up by its id too, whatever the count.
        QTest::newRow("counted: time-out") << AnyError(repositoryTimeOut(QUrl(u"git://h/t"_s), std::chrono::milliseconds(1500)))
                                           << marked(u"corvane.comparison.time-out"_s, {u"git://h/t"_s, u"1.5"_s});
        // What the JSON decoder reports, in a file's own words.
        const auto decoded = [](const char* json) {
            const auto theme = ThemeJsonParser().decode(QByteArray(json));
            return theme ? AnyError(TextError{u"decoded"_s}) : theme.error();
        };
        QTest::newRow("wrong type") << decoded(R"({"name": "E", "style": "dark", "author": [], "version": 1})")
                                    << marked(u"corvane.JSONDecoderError.typeMismatch"_s,
                                              {u"String"_s, u"version"_s, marked(u"corvane.JSONDecoderError.found.number"_s)});
        QTest::newRow("missing key") << decoded(R"({"name": "E", "style": "dark", "version": "1"})")
                                     << marked(u"corvane.JSONDecoderError.keyNotFound"_s, {u"author"_s});
        QTest::newRow("not JSON") << decoded("")
                                  << marked(u"corvane.JSONDecoderError.dataCorrupted"_s,
                                            {marked(u"corvane.JSONDecoderError.corrupted.empty"_s)});
        QTest::newRow("no version number") << decoded(R"({"name": "E", "style": "dark", "author": [], "version": "v"})")
                                           << marked(u"corvane.generic-error.description"_s,
                                                     {u"Version.ParsingError"_s, u"1"_s});
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
