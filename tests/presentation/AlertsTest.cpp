// The four alerts as a person meets them: real modal dialogs, answered from the test.
#include "Corvane/module/TextError.h"
#include "Corvane/presentation/Alerts.h"

#include "AlertAnswerer.h"

#include <QLabel>
#include <QTest>
#include <QTranslator>

#include <functional>

using namespace corvane;
using namespace corvane::test;
using Answer = AlertAnswerer::Answer;

namespace {

using ShowAlert = std::function<bool()>;

const QString longDescription = QStringLiteral(
    "Computing theme differences failed: Remote theme fetching error: Repository error: failed to resolve path "
    "'/home/someone/.local/share/Inkwell/theme-repository-clone/with/a/deep/path': No such file or directory");

// A host translation with entries for some ids only, as a host's catalogue would be.
class HostTranslator : public QTranslator {
public:
    explicit HostTranslator(QHash<QString, QString> entries) : m_entries(std::move(entries)) {}
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* sourceText, const char*, int) const override
    {
        return m_entries.value(QString::fromUtf8(sourceText));
    }

private:
    QHash<QString, QString> m_entries;
};

} // namespace

Q_DECLARE_METATYPE(ShowAlert)

class AlertsTest : public QObject {
    Q_OBJECT

private slots:
    void alerts_data()
    {
        QTest::addColumn<ShowAlert>("show");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<bool>("hasDetail");
        QTest::addColumn<bool>("trueForFirstButton");

        const AnyError error = TextError{QStringLiteral("The remote hung up.")};
        QTest::newRow("fetch failed")
            << ShowAlert([error] { return showFetchFailedAlert(error); }) << "Update Error"
            << "Themes from the server could not be updated."
            << QStringList{QStringLiteral("Ignore"), QStringLiteral("Retry")} << true << false;
        QTest::newRow("copying failed")
            << ShowAlert([error] { return showCopyingFailedAlert(QStringLiteral("ember.theme.json"), error); })
            << "Copying Theme Failed"
            << "The theme 'ember.theme.json' could not be copied. You can try to delete all local themes to start fresh."
            << QStringList{QStringLiteral("Continue"), QStringLiteral("Delete Local Themes")} << true << true;
        QTest::newRow("deleting the clone failed")
            << ShowAlert([] { return showDeletingLocalRepoFailedAlert(); }) << "Deleting Local Theme Repository Failed"
            << "Deleting the local copy of available themes failed. You can try to remove the directory manually and "
               "try again."
            << QStringList{QStringLiteral("Ignore"), QStringLiteral("Show Directory")} << false << false;
        QTest::newRow("deleting installed themes failed, with the clone's title")
            << ShowAlert([] { return showDeletingInstalledThemesFailedAlert(); })
            << "Deleting Local Theme Repository Failed"
            << "Removing installed themes failed. You can try to remove the directory manually and try again."
            << QStringList{QStringLiteral("Ignore"), QStringLiteral("Show Directory")} << false << false;
    }

    void alerts()
    {
        QFETCH(ShowAlert, show);
        QFETCH(QString, title);
        QFETCH(QString, message);
        QFETCH(QStringList, buttons);
        QFETCH(bool, hasDetail);
        QFETCH(bool, trueForFirstButton);

        // Every way of answering: the first button is the only one that means "first".
        for (const Answer answer : {Answer::first, Answer::second, Answer::escape, Answer::close}) {
            AlertAnswerer alerts({answer});
            const bool result = show();
            QCOMPARE(alerts.seen().size(), 1);
            const auto& seen = alerts.seen().first();
            QCOMPARE(seen.title, title);
            QCOMPARE(seen.message, message);
            QCOMPARE(seen.buttons, buttons);
            QCOMPARE(!seen.detail.isEmpty(), hasDetail);
            QCOMPARE(result, answer == Answer::first ? trueForFirstButton : !trueForFirstButton);
        }
    }

    void theFirstButtonIsTheDefault()
    {
        bool checked = false;
        QTimer::singleShot(0, this, [&] {
            QTRY_VERIFY(qobject_cast<AlertDialog*>(QApplication::activeModalWidget()));
            auto alert = qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
            QVERIFY(alert->button(0)->isDefault());
            QVERIFY(!alert->button(1)->isDefault());
            QTest::keyClick(alert, Qt::Key_Return);
            checked = true;
        });
        QVERIFY(!showFetchFailedAlert(TextError{QStringLiteral("x")})); // Return chose Ignore
        QVERIFY(checked);
    }

    void fileNamesAreFilledInAsData_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::newRow("per cent sign") << "100%.theme.json";
        QTest::newRow("placeholder in the name") << "%@ and %1.theme.json";
        QTest::newRow("quote") << "it's.theme.json";
    }

    void fileNamesAreFilledInAsData()
    {
        QFETCH(QString, fileName);
        AlertAnswerer alerts({Answer::first});
        showCopyingFailedAlert(fileName, TextError{QStringLiteral("x")});
        QCOMPARE(alerts.seen().first().message,
                 QStringLiteral("The theme '") + fileName
                     + QStringLiteral("' could not be copied. You can try to delete all local themes to start fresh."));
    }

    void theCopyingDetailIsTheGenericTextNotTheErrors()
    {
        AlertAnswerer alerts({Answer::first});
        showCopyingFailedAlert(QStringLiteral("ember.theme.json"), TextError{QStringLiteral("Disk full")});
        const QString detail = alerts.seen().first().detail;
        QVERIFY2(detail.contains(QStringLiteral("CopyingThemeFailed")), qPrintable(detail));
        QVERIFY(!detail.contains(QStringLiteral("Disk full")));
        QVERIFY(!detail.contains(QStringLiteral("ember")));
    }

    void theDetailFieldIsQuietSelectableAndWrapped_data()
    {
        QTest::addColumn<QString>("description");
        QTest::newRow("short") << "The remote hung up.";
        QTest::newRow("long, with a path") << longDescription;
        QTest::newRow("one unbroken token longer than the field")
            << QStringLiteral("git://127.0.0.1/") + QString(120, u'x') + QStringLiteral(".git");
    }

    void theDetailFieldIsQuietSelectableAndWrapped()
    {
        QFETCH(QString, description);
        std::unique_ptr<QLabel> field(makeErrorDetailField(TextError{description}));
        QCOMPARE(field->text(), description);
        QCOMPARE(field->textFormat(), Qt::PlainText);
        QVERIFY(field->textInteractionFlags() & Qt::TextSelectableByMouse);
        QVERIFY(field->font().pointSizeF() < QApplication::font().pointSizeF());
        QVERIFY(field->palette().color(QPalette::WindowText) != QApplication::palette().color(QPalette::WindowText));
        QVERIFY(field->width() <= 300);
        field->show();
        const int oneLine = field->fontMetrics().height();
        if (description.size() > 80)
            QVERIFY2(field->height() > 2 * oneLine, "a long description wraps onto several lines");
        else
            QVERIFY(field->height() < 2 * oneLine);
        // Nothing of the text is cut: its wrapped height fits the field.
        QVERIFY(field->heightForWidth(field->width()) <= field->height());
    }

    void aHostTranslationReplacesJustItsText()
    {
        HostTranslator host({{QStringLiteral("corvane.fetch-failed.title"), QStringLiteral("Aktualisierungsfehler")},
                             {QStringLiteral("corvane.fetch-failed.retry"), QStringLiteral("Erneut versuchen")}});
        QCoreApplication::installTranslator(&host);
        AlertAnswerer alerts({Answer::first});
        showFetchFailedAlert(TextError{QStringLiteral("x")});
        QCoreApplication::removeTranslator(&host);
        const auto& seen = alerts.seen().first();
        QCOMPARE(seen.title, QStringLiteral("Aktualisierungsfehler"));
        QCOMPARE(seen.message, QStringLiteral("Themes from the server could not be updated."));
        QCOMPARE(seen.buttons, QStringList({QStringLiteral("Ignore"), QStringLiteral("Erneut versuchen")}));
    }
};

QTEST_MAIN(AlertsTest)
#include "AlertsTest.moc"
