// SPDX-License-Identifier: MIT
#include "Corvane/module/Localized.h"
#include "Corvane/module/TextError.h"
#include "Corvane/themes/ThemeDecodingError.h"

#include <QFile>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

using namespace corvane;

namespace {

struct Message {
    QString source;
    QString translation;
    QString type;
};

// The messages of a Qt Linguist file, by id.
QHash<QString, Message> readCatalogue(const QString& path)
{
    QHash<QString, Message> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString id;
    while (!xml.atEnd()) {
        if (!xml.readNextStartElement())
            continue;
        if (xml.name() == u"message") {
            id = xml.attributes().value(QLatin1StringView("id")).toString();
        } else if (xml.name() == u"source") {
            messages[id].source = xml.readElementText();
        } else if (xml.name() == u"translation") {
            messages[id].type = xml.attributes().value(QLatin1StringView("type")).toString();
            messages[id].translation = xml.readElementText(QXmlStreamReader::IncludeChildElements);
        }
    }
    return messages;
}

QString sourceFile(const QString& relative)
{
    return qEnvironmentVariable("CORVANE_TEST_SOURCE_DIR") + u'/' + relative;
}

} // namespace

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
            QVERIFY2(german.type.isEmpty() && !german.translation.isEmpty(),
                     qPrintable(id + QStringLiteral(" is not finished in German")));
            QVERIFY2(german.translation.count(u"%@") == it->source.count(u"%@"),
                     qPrintable(id + QStringLiteral(" fills a different number of placeholders in German")));
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
            //% "The theme '%@' could not be copied. You can try to delete all local themes to start fresh."
            localizedString(QT_TRID_NOOP("corvane.copying-failed.message"),
                            "The theme '%@' could not be copied. You can try to delete all local themes to start fresh."),
            {QStringLiteral("100%@night.theme.json")});
        QCOMPARE(message, QStringLiteral("Das Theme „100%@night.theme.json“ ließ sich nicht kopieren."));
        // An id the host does not translate keeps the English default, also when nested.
        QCOMPARE(ThemeDecodingError{TextError{QStringLiteral("Expected directoryURL")}}.errorDescription(),
                 QStringLiteral("Theme decoding failed: Expected directoryURL"));

        QCoreApplication::removeTranslator(&host);
    }

    void germanCatalogueTranslatesNestedTexts()
    {
        QTranslator german;
        QVERIFY(german.load(QStringLiteral(GERMAN_CATALOGUE)));
        QCoreApplication::installTranslator(&german);
        const QString text = ThemeDecodingError{TextError{QStringLiteral("Expected directoryURL")}}.errorDescription();
        QVERIFY2(!text.startsWith(QStringLiteral("Theme decoding failed")), qPrintable(text));
        QVERIFY(text.endsWith(QStringLiteral("Expected directoryURL")));
        QCoreApplication::removeTranslator(&german);
    }

    void placeholdersAreFilledAsData_data()
    {
        QTest::addColumn<QString>("format");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected");

        QTest::newRow("two in order") << "reading Data from '%@' failed: %@" << QStringList{"/a b", "gone"}
                                      << "reading Data from '/a b' failed: gone";
        QTest::newRow("per-cent sign in an argument") << "The theme '%@' could not be copied."
                                                      << QStringList{"50%.theme.json"}
                                                      << "The theme '50%.theme.json' could not be copied.";
        QTest::newRow("placeholder inside an argument is not filled again")
            << "%@ and %@" << QStringList{"%@", "x"} << "%@ and x";
        QTest::newRow("Qt-style markers stay") << "%1 %@" << QStringList{"x"} << "%1 x";
        QTest::newRow("more placeholders than arguments") << "%@ %@" << QStringList{"x"} << "x %@";
        QTest::newRow("newline in an argument") << "'%@'" << QStringList{"a\nb"} << "'a\nb'";
    }

    void placeholdersAreFilledAsData()
    {
        QFETCH(QString, format);
        QFETCH(QStringList, arguments);
        QFETCH(QString, expected);
        QString result;
        if (arguments.size() == 1)
            result = fillPlaceholders(format, {arguments[0]});
        else
            result = fillPlaceholders(format, {arguments[0], arguments[1]});
        QCOMPARE(result, expected);
    }
};

QTEST_GUILESS_MAIN(TranslationsTest)
#include "TranslationsTest.moc"
