// SPDX-License-Identifier: MIT
#include "Corvane/module/Localized.h"
#include "Corvane/module/TextError.h"
#include "Corvane/module/Translations.h"
#include "Corvane/sources/CloneLock.h"
#include "Corvane/sources/RepositoryTimeOut.h"
#include "Corvane/sources/UntrustedThemeFiles.h"
#include "Corvane/themes/RegularFile.h"
#include "Corvane/themes/ThemeDecodingError.h"

#include "Catalogue.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <functional>

using namespace corvane;
using namespace corvane::test;
using namespace std::chrono_literals;

class TranslationsTest : public QObject {
    Q_OBJECT

private slots:
    // The committed template and German catalogue must hold every id the code looks up today.
    void everyIdInTheCodeIsTranslated()
    {
        QTemporaryDir scratch;
        const QString extracted = scratch.filePath(QStringLiteral("extracted.ts"));
        QProcess lupdate;
        lupdate.start(QStringLiteral(LUPDATE), {QStringLiteral("-silent"), QStringLiteral("-locations"),
                                                QStringLiteral("none"), sourceFile(QStringLiteral("Corvane")),
                                                QStringLiteral("-ts"), extracted});
        QVERIFY(lupdate.waitForFinished(60000));
        QCOMPARE(lupdate.exitCode(), 0);

        const auto inCode = readCatalogue(extracted);
        const auto inTemplate = readCatalogue(sourceFile(QStringLiteral("translations/corvane.ts")));
        const auto inGerman = readCatalogue(sourceFile(QStringLiteral("translations/corvane_de.ts")));
        QVERIFY(inCode.size() > 30);
        for (auto it = inCode.cbegin(); it != inCode.cend(); ++it) {
            const QString& id = it.key();
            QVERIFY2(inTemplate.contains(id), qPrintable(id + QStringLiteral(" is missing from the template")));
            QCOMPARE(inTemplate[id].source, it->source);
            QVERIFY2(inGerman.contains(id), qPrintable(id + QStringLiteral(" has no German translation")));
            const Message& german = inGerman[id];
            QVERIFY2(!it->source.contains(u"%@"), qPrintable(id + QStringLiteral(" still uses %@ markers")));
            QCOMPARE(german.counted, it->counted);
            // German has a singular and a plural.
            QVERIFY2(german.type.isEmpty() && german.translations.size() == (it->counted ? 2 : 1),
                     qPrintable(id + QStringLiteral(" is not finished in German")));
            for (const QString& form : german.translations) {
                QVERIFY2(!form.isEmpty(), qPrintable(id + QStringLiteral(" has an empty German form")));
                QVERIFY2(markers(form) == markers(it->source),
                         qPrintable(id + QStringLiteral(" fills other markers in German: ") + form));
            }
        }
    }

    void hostTranslatorOverridesSomeIds()
    {
        QTranslator host;
        QVERIFY(host.load(QStringLiteral(HOST_PARTIAL_CATALOGUE)));
        QCoreApplication::installTranslator(&host);

        //% "Light"
        QCOMPARE(localizedString(QT_TRID_NOOP("corvane.style.light"), "Light"), QStringLiteral("Hell"));
        //% "Dark"
        QCOMPARE(localizedString(QT_TRID_NOOP("corvane.style.dark"), "Dark"), QStringLiteral("Dark"));
        const QString message = fillPlaceholders(
            //% "The theme '%1' could not be copied. You can try to delete all local themes to start fresh."
            localizedString(QT_TRID_NOOP("corvane.copying-failed.message"),
                            "The theme '%1' could not be copied. You can try to delete all local themes to start fresh."),
            {QStringLiteral("100%1night.theme.json")});
        QCOMPARE(message, QStringLiteral("Das Theme „100%1night.theme.json“ ließ sich nicht kopieren."));
        // An id the host does not translate keeps the English default, also when nested.
        QCOMPARE(ThemeDecodingError{TextError{QStringLiteral("Expected directoryURL")}}.errorDescription(),
                 QStringLiteral("Theme decoding failed: Expected directoryURL"));

        QCoreApplication::removeTranslator(&host);
    }

    void placeholdersAreFilledAsData_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected");

        QTest::newRow("two in order") << "reading Data from '%1' failed: %2" << QStringList{"/a b", "gone"}
                                      << "reading Data from '/a b' failed: gone";
        QTest::newRow("reordered by a translator") << "%2: '%1'" << QStringList{"/a b", "gone"} << "gone: '/a b'";
        QTest::newRow("one argument twice") << "%1 and %1" << QStringList{"x"} << "x and x";
        QTest::newRow("per-cent sign in an argument") << "The theme '%1' could not be copied."
                                                      << QStringList{"50%.theme.json"}
                                                      << "The theme '50%.theme.json' could not be copied.";
        QTest::newRow("marker inside an argument is not filled again")
            << "%1 and %2" << QStringList{"%2 %1 %@", "x"} << "%2 %1 %@ and x";
        QTest::newRow("marker without an argument stays") << "%1 %3" << QStringList{"x", "y"} << "x %3";
        QTest::newRow("a tenth marker is not the first and a zero") << "%10 %1" << QStringList{"x"} << "%10 x";
        QTest::newRow("per-cent sign before other text stays") << "100% %1%" << QStringList{"x"} << "100% x%";
        QTest::newRow("newline in an argument") << "'%1'" << QStringList{"a\nb"} << "'a\nb'";
        QTest::newRow("a host's unnumbered markers, in order") << "'%@': %@" << QStringList{"%@ 1%", "x"}
                                                               << "'%@ 1%': x";
    }

    void placeholdersAreFilledAsData()
    {
        QFETCH(QString, format);
        QFETCH(QStringList, arguments);
        QFETCH(QString, expected);
        QCOMPARE(arguments.size() == 1 ? fillPlaceholders(format, {arguments[0]})
                                       : fillPlaceholders(format, {arguments[0], arguments[1]}), expected);
    }

    // Texts that count: the word agrees with the number, and the number is written as the locale writes it.
    // German shows what English cannot: a decimal comma, and counts filled beside a path holding markers.
    void countedTexts_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<std::function<QString()>>("text");
        QTest::addColumn<QString>("expected");
        const std::function<QString()> tooLarge = [] { return RegularFile::describeTooLarge(5242955, 4194304); };
        const std::function<QString()> oneByte = [] { return RegularFile::describeTooLarge(1, 0); };
        const auto timeOut = [](std::chrono::milliseconds limit) {
            return std::function<QString()>(
                [limit] { return repositoryTimeOut(QUrl(QStringLiteral("git://h/t")), limit).message(); });
        };
        const std::function<QString()> busyForMinutes = [] { return CloneLock::busyText(QStringLiteral("/c"), 150s); };
        const std::function<QString()> oversized = [] {
            return UntrustedThemeFiles::oversizedFileText(QStringLiteral("/c/1%2.theme.json"), 12000000, 4194304);
        };

        QTest::newRow("en: many bytes") << "en_US" << tooLarge
                                        << "The file has 5,242,955 bytes; a theme file may have at most 4,194,304 bytes.";
        QTest::newRow("en: one byte") << "en_US" << oneByte
                                      << "The file has 1 byte; a theme file may have at most 0 bytes.";
        QTest::newRow("en: one second") << "en_US" << timeOut(1000ms)
                                        << "The theme repository git://h/t did not answer within 1 second.";
        QTest::newRow("en: a fraction of a second") << "en_US" << timeOut(1500ms)
                                                    << "The theme repository git://h/t did not answer within 1.5 seconds.";
        QTest::newRow("de: a fraction of a second") << "de_DE" << timeOut(1500ms)
                                                    << "Das Theme-Repository git://h/t hat nicht innerhalb von 1,5 Sekunden geantwortet.";
        QTest::newRow("en: minutes") << "en_US" << busyForMinutes
                                     << "Another synchronisation of the clone /c has been running for 2 minutes.";
        QTest::newRow("de: a path with markers and a count")
            << "de_DE" << oversized
            << "Die Theme-Datei „/c/1%2.theme.json“ hat 12.000.000 Bytes; eine Theme-Datei darf höchstens "
               "4.194.304 Bytes haben. Sie wurde nicht ausgecheckt.";
    }

    void countedTexts()
    {
        QFETCH(QString, language);
        QFETCH(std::function<QString()>, text);
        QTranslator german;
        if (language.startsWith(QStringLiteral("de"))) {
            QVERIFY(german.load(QStringLiteral(GERMAN_CATALOGUE)));
            QCoreApplication::installTranslator(&german);
        }
        QLocale::setDefault(QLocale(language));
        const QString result = text();
        QLocale::setDefault(QLocale::c());
        QCoreApplication::removeTranslator(&german);
        QTEST(result, "expected");
    }

    // The catalogue is found from the program's place in the build tree, as an installed one is found
    // from the library's; a later call replaces the earlier translator.
    void loadTranslationsInstallsTheCatalogueOfALanguage_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QString>("light");
        QTest::newRow("German") << "de_DE" << true << "Hell";
        QTest::newRow("a regional German") << "de_AT" << true << "Hell";
        QTest::newRow("a language without a catalogue replaces German") << "fr_FR" << false << "Light";
        QTest::newRow("German again") << "de" << true << "Hell";
        QTest::newRow("English") << "en_GB" << false << "Light";
    }

    void loadTranslationsInstallsTheCatalogueOfALanguage()
    {
        QFETCH(QString, language);
        QTEST(loadTranslations(QLocale(language)), "found");
        //% "Light"
        QTEST(localizedString(QT_TRID_NOOP("corvane.style.light"), "Light"), "light");
    }
};

QTEST_GUILESS_MAIN(TranslationsTest)
#include "TranslationsTest.moc"
