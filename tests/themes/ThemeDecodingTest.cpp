// Decoding one theme document: which fault wins when a file has several, the exact texts of each
// fault, and the rules by which two themes are the same.

#include "Corvane/module/TextError.h"
#include "Corvane/themes/JSONDecoderError.h"
#include "Corvane/themes/Theme.h"
#include "Corvane/themes/ThemeJsonParser.h"

#include <QTest>

using namespace corvane;

namespace {

// A theme object from its four values as JSON text, so a row can break any one of them.
QByteArray document(const QByteArray& name, const QByteArray& style, const QByteArray& author,
                    const QByteArray& version, const QByteArray& extra = {})
{
    QByteArray json = "{";
    if (!name.isNull())
        json += "\"name\": " + name + ",";
    if (!style.isNull())
        json += "\"style\": " + style + ",";
    if (!author.isNull())
        json += "\"author\": " + author + ",";
    if (!version.isNull())
        json += "\"version\": " + version + ",";
    json += "\"colors\": {\"accent\": \"#ff7a45\"}" + extra + "}";
    return json;
}

const QByteArray missing; // a null QByteArray: the key is left out

QString styleText(Theme::Style style)
{
    return style == Theme::Style::dark ? QStringLiteral("dark") : QStringLiteral("light");
}

} // namespace

class ThemeDecodingTest : public QObject {
    Q_OBJECT

private slots:
    void decodesValidDocuments_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("style");
        QTest::addColumn<QStringList>("authors");
        QTest::addColumn<QString>("version");

        const QByteArray oneAuthor = R"([{"name": "Mara"}])";
        QTest::newRow("plain") << document(R"("Ember")", R"("dark")", oneAuthor, R"("1.3.0")") << "Ember"
                               << "dark" << QStringList{"Mara"} << "1.3.0";
        for (const char* written : {"Dark", "DARK", "dArK"})
            QTest::addRow("style %s", written) << document(R"("E")", '"' + QByteArray(written) + '"', oneAuthor, R"("1")")
                                               << "E" << "dark" << QStringList{"Mara"} << "1.0.0";
        for (const char* written : {"Light", "LIGHT"})
            QTest::addRow("style %s", written) << document(R"("E")", '"' + QByteArray(written) + '"', oneAuthor, R"("1")")
                                               << "E" << "light" << QStringList{"Mara"} << "1.0.0";
        QTest::newRow("no authors") << document(R"("E")", R"("light")", "[]", R"("2.0")") << "E" << "light"
                                    << QStringList{} << "2.0.0";
        QTest::newRow("author with more keys")
            << document(R"("E")", R"("dark")", R"([{"email": "m@x", "name": "Mara", "url": null}])", R"("1")") << "E"
            << "dark" << QStringList{"Mara"} << "1.0.0";
        QTest::newRow("authors keep order and duplicates")
            << document(R"("E")", R"("dark")", R"([{"name": "B"}, {"name": "A"}, {"name": "B"}])", R"("1")") << "E"
            << "dark" << QStringList{"B", "A", "B"} << "1.0.0";
        QTest::newRow("version string 1.2") << document(R"("E")", R"("dark")", "[]", R"("1.2")") << "E" << "dark"
                                            << QStringList{} << "1.2.0";
        QTest::newRow("lenient version") << document(R"("E")", R"("dark")", "[]", R"("v1.2.3")") << "E" << "dark"
                                         << QStringList{} << "2.3.0";
        QTest::newRow("empty name") << document(R"("")", R"("dark")", "[]", R"("1")") << "" << "dark" << QStringList{}
                                    << "1.0.0";
        QTest::newRow("escaped and non-Latin name")
            << document("\"Caf\\u00e9 \\\"Nacht\\\" \\u591c\"", R"("dark")", R"([{"name": "\u0422\u043e\u043c"}])", R"("1")")
            << QString::fromUtf8("Café \"Nacht\" 夜") << "dark" << QStringList{QString::fromUtf8("Том")} << "1.0.0";
        QTest::newRow("keys in any order, unknown keys at every level")
            << QByteArray(R"({"version": "3", "x": [1, {"name": 5}], "author": [{"name": "A", "extra": {"name": 1}}],)"
                          R"( "style": "light", "Name": 7, "name": "N"})")
            << "N" << "light" << QStringList{"A"} << "3.0.0";
        QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + document(R"("E")", R"("dark")", "[]", R"("1")") << "E"
                                         << "dark" << QStringList{} << "1.0.0";
        QTest::newRow("white space around the object")
            << " \n\t" + document(R"("E")", R"("dark")", "[]", R"("1")") + "\n\n" << "E" << "dark" << QStringList{}
            << "1.0.0";
    }

    void decodesValidDocuments()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, name);
        QFETCH(QString, style);
        QFETCH(QStringList, authors);
        QFETCH(QString, version);

        ThemeJsonParser parser;
        const auto theme = parser.decode(json);
        QVERIFY2(theme, theme ? "" : qPrintable(theme.error().errorDescription()));
        QCOMPARE(theme->identifier.name(), name);
        QCOMPARE(styleText(theme->identifier.style()), style);
        QCOMPARE(theme->authors, authors);
        QCOMPARE(theme->version.toString(), version);
    }

    // Each row a document with one or more faults and the exact text of the one that must win.
    void reportsTheFirstFault_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("description");

        const QByteArray author = R"([{"name": "Mara"}])";
        const QString generic = QStringLiteral("The operation couldn't be completed. (Version.ParsingError error 1.)");

        QTest::newRow("top level array") << QByteArray(R"([{"name": "E"}])")
                                         << "Expected the document to be a JSON Object but found an array instead.";
        QTest::newRow("top level string") << QByteArray(R"("dark")")
                                          << "Expected the document to be a JSON Object but found a string instead.";
        QTest::newRow("top level null") << QByteArray("null")
                                        << "Expected the document to be a JSON Object but found null instead.";
        QTest::newRow("name missing") << document(missing, R"("dark")", author, R"("1")")
                                      << "No value associated with key \"name\".";
        QTest::newRow("name in other case") << document(missing, R"("dark")", author, R"("1")", R"(, "Name": "E")")
                                            << "No value associated with key \"name\".";
        QTest::newRow("name null") << document("null", R"("dark")", author, R"("1")")
                                   << "Expected String value for key \"name\" but found null instead.";
        QTest::newRow("name number") << document("12", R"("dark")", author, R"("1")")
                                     << "Expected String value for key \"name\" but found a number instead.";
        QTest::newRow("style grey") << document(R"("E")", R"("grey")", author, R"("1")") << "Invalid style: grey";
        QTest::newRow("style keeps case as written") << document(R"("E")", R"("Grey")", author, R"("1")")
                                                     << "Invalid style: Grey";
        QTest::newRow("style is not trimmed") << document(R"("E")", R"(" dark")", author, R"("1")")
                                              << "Invalid style:  dark";
        QTest::newRow("style empty") << document(R"("E")", R"("")", author, R"("1")") << "Invalid style: ";
        QTest::newRow("style in full-width letters") << document(R"("E")", R"("\uff24\uff21\uff32\uff2b")", author, R"("1")")
                                                     << QString::fromUtf8("Invalid style: ＤＡＲＫ");
        QTest::newRow("style with dotted capital I lowers to two characters")
            << document(R"("E")", R"("L\u0130GHT")", author, R"("1")") << QString::fromUtf8("Invalid style: LİGHT");
        QTest::newRow("style boolean") << document(R"("E")", "true", author, R"("1")")
                                       << "Expected String value for key \"style\" but found a boolean instead.";
        QTest::newRow("authors instead of author")
            << document(R"("E")", R"("dark")", missing, R"("1")", R"(, "authors": [{"name": "Mara"}])")
            << "No value associated with key \"author\".";
        QTest::newRow("author null") << document(R"("E")", R"("dark")", "null", R"("1")")
                                     << "Expected Array value for key \"author\" but found null instead.";
        QTest::newRow("author one object") << document(R"("E")", R"("dark")", R"({"name": "Mara"})", R"("1")")
                                           << "Expected Array value for key \"author\" but found an object instead.";
        QTest::newRow("author array of strings") << document(R"("E")", R"("dark")", R"(["Mara"])", R"("1")")
                                                 << "Expected Object value for key \"author[0]\" but found a string instead.";
        QTest::newRow("author element null") << document(R"("E")", R"("dark")", R"([{"name": "A"}, null])", R"("1")")
                                             << "Expected Object value for key \"author[1]\" but found null instead.";
        QTest::newRow("second author without name")
            << document(R"("E")", R"("dark")", R"([{"name": "A"}, {"Name": "B"}])", R"("1")")
            << "No value associated with key \"author[1].name\".";
        QTest::newRow("author name null") << document(R"("E")", R"("dark")", R"([{"name": null}])", R"("1")")
                                          << "Expected String value for key \"author[0].name\" but found null instead.";
        QTest::newRow("author name array") << document(R"("E")", R"("dark")", R"([{"name": ["A"]}])", R"("1")")
                                           << "Expected String value for key \"author[0].name\" but found an array instead.";
        QTest::newRow("version number") << document(R"("E")", R"("dark")", author, "1.2")
                                        << "Expected String value for key \"version\" but found a number instead.";
        QTest::newRow("version missing") << document(R"("E")", R"("dark")", author, missing)
                                         << "No value associated with key \"version\".";
        QTest::newRow("version null") << document(R"("E")", R"("dark")", author, "null")
                                      << "Expected String value for key \"version\" but found null instead.";
        QTest::newRow("version without number") << document(R"("E")", R"("dark")", author, R"("beta")") << generic;
        QTest::newRow("version empty") << document(R"("E")", R"("dark")", author, R"("")") << generic;

        // Several faults: the order of the checks decides.
        QTest::newRow("wrong style and no author") << document(R"("E")", R"("grey")", missing, R"("1")")
                                                   << "Invalid style: grey";
        QTest::newRow("no name and wrong style") << document(missing, R"("grey")", author, R"("1")")
                                                 << "No value associated with key \"name\".";
        QTest::newRow("name null and style missing") << document("null", missing, author, R"("1")")
                                                     << "Expected String value for key \"name\" but found null instead.";
        QTest::newRow("style missing and author broken") << document(R"("E")", missing, "7", R"("1")")
                                                         << "No value associated with key \"style\".";
        QTest::newRow("author broken and version a number") << document(R"("E")", R"("dark")", R"([3])", "1")
                                                            << "Expected Object value for key \"author[0]\" but found a number instead.";
        QTest::newRow("first broken author wins") << document(R"("E")", R"("dark")", R"([{}, 5])", R"("beta")")
                                                  << "No value associated with key \"author[0].name\".";
        QTest::newRow("everything wrong in an array") << QByteArray(R"([{"name": null, "style": "grey"}])")
                                                      << "Expected the document to be a JSON Object but found an array instead.";
    }

    void reportsTheFirstFault()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, description);

        ThemeJsonParser parser;
        const auto theme = parser.decode(json);
        QVERIFY(!theme);
        QCOMPARE(theme.error().errorDescription(), description);
    }

    // What is not JSON at all: one kind of failure, whose reason says what is wrong.
    void refusesCorruptedData_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");

        QTest::newRow("empty") << QByteArray() << "the document is empty";
        QTest::newRow("only white space") << QByteArray(" \n ") << "the document is empty";
        QTest::newRow("invalid UTF-8 in a value")
            << document("\"Caf\xC3\x28\"", R"("dark")", "[]", R"("1")") << "the text is not valid UTF-8";
        QTest::newRow("overlong encoding") << document("\"\xC0\xAF\"", R"("dark")", "[]", R"("1")")
                                           << "the text is not valid UTF-8";
        QTest::newRow("nested 100,000 deep") << QByteArray(100000, '[') + QByteArray(100000, ']')
                                             << "arrays and objects are nested more than 1024 levels deep";
        QTest::newRow("deep nesting inside an ignored key")
            << document(R"("E")", R"("dark")", "[]", R"("1")", ", \"x\": " + QByteArray(5000, '[') + QByteArray(5000, ']'))
            << "arrays and objects are nested more than 1024 levels deep";
        QTest::newRow("unclosed object") << QByteArray(R"({"name": "E")") << QString();
        QTest::newRow("trailing comma") << QByteArray(R"({"name": "E",})") << QString();
        QTest::newRow("two documents") << document(R"("E")", R"("dark")", "[]", R"("1")") + "{}" << QString();
        QTest::newRow("single quotes") << QByteArray("{'name': 'E'}") << QString();
        QTest::newRow("binary garbage") << QByteArray::fromHex("00ff13e8c7a1b2007b226e616d65") << QString();
        QTest::newRow("NUL bytes") << QByteArray(64, '\0') << QString();
    }

    void refusesCorruptedData()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, reason);

        ThemeJsonParser parser;
        const auto theme = parser.decode(bytes);
        QVERIFY(!theme);
        const JSONDecoderError* error = theme.error().as<JSONDecoderError>();
        QVERIFY(error);
        QCOMPARE(error->kind(), JSONDecoderError::Kind::dataCorrupted);
        const QString description = error->errorDescription();
        QVERIFY2(description.startsWith(u"The data couldn't be read because it isn't valid JSON ("), qPrintable(description));
        QVERIFY2(description.endsWith(u")."), qPrintable(description));
        if (!reason.isEmpty())
            QCOMPARE(description, QStringLiteral("The data couldn't be read because it isn't valid JSON (%1).").arg(reason));
    }

    // The parser is reused for every file of a reading: a failure must not spoil the next document,
    // and a large document must not leave a later small one reading stale bytes.
    void parserIsReusable()
    {
        ThemeJsonParser parser;
        QVERIFY(!parser.decode(QByteArray(3000, '[')));
        // 100 kB keeps the parser's buffers for the next document, 1 MB gives them up.
        for (const int padding : {100000, 1000000}) {
            QByteArray large = document(R"("Large")", R"("dark")", R"([{"name": "A"}])", R"("9")");
            large.insert(large.size() - 1, ", \"pad\": \"" + QByteArray(padding, 'x') + '"');
            QCOMPARE(parser.decode(large)->identifier.name(), QStringLiteral("Large"));
            const auto small = parser.decode(document(R"("S")", R"("light")", "[]", R"("1")"));
            QVERIFY(small);
            QCOMPARE(small->identifier.name(), QStringLiteral("S"));
            QVERIFY(small->authors.isEmpty());
            // A document cut short right where the large one went on.
            QVERIFY(parser.decode(large));
            QVERIFY(!parser.decode(QByteArray(R"({"name": "S")")));
        }
    }

    void comparesThemes_data()
    {
        QTest::addColumn<QString>("leftName");
        QTest::addColumn<QString>("rightName");
        QTest::addColumn<bool>("sameStyle");
        QTest::addColumn<QStringList>("leftAuthors");
        QTest::addColumn<QStringList>("rightAuthors");
        QTest::addColumn<bool>("sameVersion");
        QTest::addColumn<bool>("identifiersEqual");
        QTest::addColumn<bool>("themesEqual");

        const QStringList ab{"A", "B"};
        QTest::newRow("identical") << "Ember" << "Ember" << true << ab << ab << true << true << true;
        QTest::newRow("other version") << "Ember" << "Ember" << true << ab << ab << false << true << false;
        QTest::newRow("other style") << "Ember" << "Ember" << false << ab << ab << true << false << false;
        QTest::newRow("case matters") << "Ember" << "ember" << true << ab << ab << true << false << false;
        QTest::newRow("composed and decomposed") << QString::fromUtf8("Caf\u00e9") << QString::fromUtf8("Cafe\u0301")
                                                 << true << ab << ab << true << true << true;
        QTest::newRow("Hangul syllable and its jamo") << QString::fromUtf8("\uD55C") << QString::fromUtf8("\u1112\u1161\u11AB")
                                                      << true << ab << ab << true << true << true;
        QTest::newRow("compatibility forms differ") << QString::fromUtf8("\uFB01le") << "file" << true << ab << ab
                                                    << true << false << false;
        QTest::newRow("author order matters") << "Ember" << "Ember" << true << ab << QStringList{"B", "A"} << true
                                              << true << false;
        QTest::newRow("one author more") << "Ember" << "Ember" << true << ab << QStringList{"A", "B", "C"} << true
                                         << true << false;
        QTest::newRow("authors canonically equal")
            << "Ember" << "Ember" << true << QStringList{QString::fromUtf8("Tom\u00e1s")}
            << QStringList{QString::fromUtf8("Toma\u0301s")} << true << true << true;
    }

    void comparesThemes()
    {
        QFETCH(QString, leftName);
        QFETCH(QString, rightName);
        QFETCH(bool, sameStyle);
        QFETCH(QStringList, leftAuthors);
        QFETCH(QStringList, rightAuthors);
        QFETCH(bool, sameVersion);
        QFETCH(bool, identifiersEqual);
        QFETCH(bool, themesEqual);

        const Theme left{Theme::Identifier(leftName, Theme::Style::dark), leftAuthors, Version(1, 2, 0)};
        const Theme right{Theme::Identifier(rightName, sameStyle ? Theme::Style::dark : Theme::Style::light),
                          rightAuthors, sameVersion ? Version(1, 2, 0) : Version(1, 2, 1)};
        QCOMPARE(left.identifier == right.identifier, identifiersEqual);
        QCOMPARE(right.identifier == left.identifier, identifiersEqual);
        QCOMPARE(left == right, themesEqual);
        QCOMPARE(right == left, themesEqual);
        if (identifiersEqual)
            QCOMPARE(qHash(left.identifier, 7), qHash(right.identifier, 7));
        // The name as written is kept; only comparing uses the composed form.
        QCOMPARE(right.identifier.name(), rightName);
    }
};

QTEST_APPLESS_MAIN(ThemeDecodingTest)
#include "ThemeDecodingTest.moc"
