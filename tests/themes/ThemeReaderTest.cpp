// SPDX-License-Identifier: MIT
// Reading theme files: what a document yields and which fault wins when it has several, which files
// of a directory are read and in which order, and input that must fail clearly instead of crashing or
// hanging.

#include "Corvane/themes/FileManager.h"
#include "Corvane/themes/ThemeJsonParser.h"
#include "Corvane/themes/ThemeReader.h"

#include "ThemeFiles.h"

#include <QDir>
#include <QLocale>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace corvane;
using namespace corvane::test;

namespace {

// A theme object whose values are JSON text; a null value leaves the key out.
QByteArray doc(const QByteArray& name, const QByteArray& style, const QByteArray& author, const QByteArray& version,
               const QByteArray& extra = {})
{
    QByteArray json = "{";
    for (const auto& [key, value] : {std::pair{"name", name}, {"style", style}, {"author", author}, {"version", version}})
        if (!value.isNull())
            json += '"' + QByteArray(key) + "\": " + value + ',';
    return json + R"("colors": {"accent": "#ff7a45"})" + extra + '}';
}

const QByteArray none, E = R"("E")", dark = R"("dark")", mara = R"([{"name": "Mara"}])", one = R"("1")";

QString typeText(const char* key, const char* type, const char* found)
{
    return QStringLiteral("Expected %1 value for key \"%2\" but found %3 instead.").arg(type, key, found);
}

QString noKey(const char* key) { return QStringLiteral("No value associated with key \"%1\".").arg(key); }

// Lists the files a test names, in its order, whether or not they exist.
class Lister final : public DirectoryLister {
public:
    explicit Lister(QList<QUrl> files) : m_files(std::move(files)) {}
    Result<QList<QUrl>, DirectoryListingError> filesInDirectory(const QUrl&) const override { return m_files; }
    QList<QUrl> m_files;
};

// "file:theme name" for each theme read (the file relative to the directory, without ".theme.json"),
// or the failure's text with the directory written as "DIR".
QStringList read(const QString& directory, std::shared_ptr<const DirectoryLister> lister = FileManager::shared())
{
    const auto themes = ThemeReader(std::make_shared<ThemeDecoder>(), lister).readThemes(QUrl::fromLocalFile(directory));
    if (!themes)
        return {themes.error().errorDescription().replace(directory, "DIR")};
    QStringList read;
    for (const StoredTheme& stored : *themes)
        read << stored.path.mid(directory.size() + 1).chopped(11) + ':' + stored.theme.identifier.name();
    return read;
}

QString failed(const char* stage, const QString& file, const QString& inner)
{
    return QStringLiteral("Theme decoding failed: Could not decode JSON, %1 from 'DIR/%2' failed: %3").arg(stage, file, inner);
}

} // namespace

class ThemeReaderTest : public QObject {
    Q_OBJECT

private slots:
    // A decoded theme reads "name|style|authors|version"; a failure, its text.
    void decodes_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("expected");

        QTest::newRow("plain") << doc(R"("Ember")", dark, mara, R"("1.3.0")") << "Ember|dark|Mara|1.3.0";
        QTest::newRow("style in any case") << doc(E, R"("LiGHT")", "[]", R"("1.2")") << "E|light||1.2.0";
        QTest::newRow("authors keep order and duplicates, extra keys")
            << doc(E, dark, R"([{"name": "B", "url": null}, {"email": "a@x", "name": "A"}, {"name": "B"}])", one)
            << "E|dark|B,A,B|1.0.0";
        QTest::newRow("escaped and non-Latin texts")
            << doc(R"("Caf\u00e9 \"N\" \u591c")", dark, R"([{"name": "\u0422\u043e\u043c"}])", one)
            << "Café \"N\" 夜|dark|Том|1.0.0";
        QTest::newRow("any key order, unknown keys at every level")
            << QByteArray(R"({"version": "3", "x": [{"name": 5}], "author": [{"name": "A", "n": {"name": 1}}],)"
                          R"( "style": "light", "Name": 7, "name": "N"})") << "N|light|A|3.0.0";
        // Numbers beyond 64 bits are still JSON: in a key nobody reads they change nothing.
        for (const QByteArray huge : {"18446744073709551616", "-9223372036854775809", "1e309", "-1E+309",
                                      "123456789012345678901234567890", "0.1e-99999"})
            QTest::addRow("%s in ignored keys", huge.constData())
                << doc(E, dark, R"([{"name": "A", "id": )" + huge + "}]", one,
                       R"(, "meta": {"id": )" + huge + R"(, "list": [)" + huge + ", \"1e309\"]}")
                << "E|dark|A|1.0.0";
        QTest::newRow("number-like texts stay texts")
            << doc(R"("1e309 \" 18446744073709551616")", dark, mara, R"("18446744073709551616.2")", R"(, "n": 1e999)")
            << "1e309 \" 18446744073709551616|dark|Mara|2.0.0";
        QTest::newRow("huge version") << doc(E, dark, mara, "18446744073709551616") << typeText("version", "String", "a number");
        QTest::newRow("byte order mark and white space") << "\xEF\xBB\xBF \n" + doc(E, dark, "[]", one) + "\n" << "E|dark||1.0.0";

        QTest::newRow("top level array") << QByteArray("[{}]")
                                         << "Expected the document to be a JSON Object but found an array instead.";
        QTest::newRow("style in full-width letters") << doc(E, R"("\uff24\uff21\uff32\uff2b")", mara, one) << "Invalid style: ＤＡＲＫ";
        QTest::newRow("style with dotted capital I") << doc(E, R"("L\u0130GHT")", mara, one) << "Invalid style: LİGHT";
        QTest::newRow("style boolean") << doc(E, "true", mara, one) << typeText("style", "String", "a boolean");
        QTest::newRow("authors, not author") << doc(E, dark, none, one, R"(, "authors": [])") << noKey("author");
        QTest::newRow("author null") << doc(E, dark, "null", one) << typeText("author", "Array", "null");
        QTest::newRow("author an object") << doc(E, dark, R"({"name": "M"})", one) << typeText("author", "Array", "an object");
        QTest::newRow("second author null") << doc(E, dark, R"([{"name": "A"}, null])", one)
                                            << typeText("author[1]", "Object", "null");
        QTest::newRow("second author nameless") << doc(E, dark, R"([{"name": "A"}, {"Name": "B"}])", one)
                                                << noKey("author[1].name");
        QTest::newRow("author name array") << doc(E, dark, R"([{"name": ["A"]}])", one)
                                           << typeText("author[0].name", "String", "an array");
        QTest::newRow("version a number") << doc(E, dark, mara, "1.2") << typeText("version", "String", "a number");
        QTest::newRow("version without a number")
            << doc(E, dark, mara, R"("beta")") << "The operation couldn't be completed. (Version.ParsingError error 1.)";

        QTest::newRow("name in other case, before style") << doc(none, R"("grey")", mara, one, R"(, "Name": "E")") << noKey("name");
        QTest::newRow("name before missing style") << doc("null", none, mara, one) << typeText("name", "String", "null");
        QTest::newRow("style as written, before author") << doc(E, R"("Grey")", none, one) << "Invalid style: Grey";
        QTest::newRow("missing style before author") << doc(E, none, "7", one) << noKey("style");
        QTest::newRow("author before version") << doc(E, dark, "[3]", "1") << typeText("author[0]", "Object", "a number");
        QTest::newRow("first broken author") << doc(E, dark, "[{}, 5]", R"("beta")") << noKey("author[0].name");
    }

    void decodes()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, expected);

        ThemeJsonParser parser;
        const auto theme = parser.decode(json);
        const QString actual = !theme ? theme.error().errorDescription()
                                      : QStringList{theme->identifier.name(),
                                                    theme->identifier.style() == Theme::Style::dark ? "dark" : "light",
                                                    theme->authors.join(u','), theme->version.toString()}.join(u'|');
        QCOMPARE(actual, expected);
    }

    // Entries are "theme file=name", "other file" (content that fails if read) or "directory/".
    void readsOnlyThemeFiles_data()
    {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("other endings") << QStringList{"a.theme.json=A", "x.THEME.JSON", "x.Theme.json", "x.theme.json.bak",
                                                      "x.themejson", "theme.json", "readme.md"} << QStringList{"a:A"};
        QTest::newRow("hidden files") << QStringList{".theme.json=Dot", ".b.theme.json=Hidden", "a.theme.json=A"}
                                      << QStringList{"a:A", ":Dot", ".b:Hidden"};
        QTest::newRow("subdirectories") << QStringList{"sub.theme.json/", "sub/b.theme.json=B", "c/d.theme.json",
                                                       "a.theme.json=A"} << QStringList{"a:A"};
    }

    void readsOnlyThemeFiles()
    {
        QFETCH(QStringList, entries);
        QFETCH(QStringList, expected);

        QTemporaryDir directory;
        for (const QString& entry : std::as_const(entries)) {
            const QFileInfo file(directory.filePath(entry.section(u'=', 0, 0)));
            if (entry.endsWith(u'/'))
                QVERIFY(QDir().mkpath(file.filePath()));
            else if (entry.contains(u'='))
                writeTheme(file.path(), file.fileName(), entry.section(u'=', 1), "dark", {"Mara"}, "1.0");
            else
                writeFile(file.path(), file.fileName(), "this would fail if it were read");
        }
        QCOMPARE(read(directory.path()), expected);
    }

    // Themes "name" or "name|style" (else dark) written to 1.theme.json, 2.theme.json, ... and listed in that order.
    void sortsByName_data()
    {
        QTest::addColumn<QStringList>("listed");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("Zen before alpha") << QStringList{"alpha", "Zen"} << QStringList{"2:Zen", "1:alpha"};
        QTest::newRow("Alpha alpha beta") << QStringList{"beta", "alpha", "Alpha"} << QStringList{"3:Alpha", "2:alpha", "1:beta"};
        QTest::newRow("variants as listed, dark first") << QStringList{"Ember", "Ash|light", "Ember|light"}
                                                        << QStringList{"2:Ash", "1:Ember", "3:Ember"};
        QTest::newRow("variants as listed, light first") << QStringList{"Ember|light", "Ash", "Ember"}
                                                         << QStringList{"2:Ash", "1:Ember", "3:Ember"};
        QTest::newRow("composed form decides") << QStringList{"e\u0301", "f", "e"} << QStringList{"3:e", "2:f", "1:e\u0301"};
        QTest::newRow("astral after U+FFFD and private use") << QStringList{"\U0001F600", "\uFFFD", "\uE000", "z"}
                                                             << QStringList{"4:z", "3:\uE000", "2:\uFFFD", "1:\U0001F600"};
        QTest::newRow("variants as listed beside astral names") << QStringList{"\U0001F600|light", "X|light", "\U0001F600", "X"}
                                                                << QStringList{"2:X", "4:X", "1:\U0001F600", "3:\U0001F600"};
        const QString faces = QString("\U0001F600").repeated(6); // twelve UTF-16 units
        QTest::newRow("long names alike in their first twelve units")
            << QStringList{"Solarized Dark Blue", "Solarized Dar", "Solarized Dark Amber", faces + "b", faces + "a"}
            << QStringList{"2:Solarized Dar", "3:Solarized Dark Amber", "1:Solarized Dark Blue", "5:" + faces + "a", "4:" + faces + "b"};
        QTest::newRow("first broken file as listed wins")
            << QStringList{"Good", "Zed|zed", "Abe|abe"} << QStringList{failed("decoding JSON", "2.theme.json", "Invalid style: zed")};
    }

    void sortsByName()
    {
        QFETCH(QStringList, listed);
        QFETCH(QStringList, expected);

        QTemporaryDir directory;
        QList<QUrl> files;
        for (const QString& theme : std::as_const(listed))
            files << QUrl::fromLocalFile(writeTheme(directory.path(), QStringLiteral("%1.theme.json").arg(files.size() + 1),
                                                    theme.section(u'|', 0, 0), (theme + "|dark").section(u'|', 1, 1), {}, "1"));
        QCOMPARE(read(directory.path(), std::make_shared<Lister>(files)), expected);
    }

    // Content naming a kind of file ("a socket", ...), "sparse" or "vanished" makes such a file.
    void failsClearlyOnBadInput_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");

        const QByteArray theme = themeJson("Big", "dark", {}, "1"), grey = themeJson("Grey", "grey", {}, "1");
        const QString x = "x.theme.json";
        const auto reading = [&](const QString& inner) { return failed("reading Data", x, inner); };
        const auto tooLarge = [&](qint64 size) {
            // Sizes as the user's locale writes them.
            return reading(QStringLiteral("The file has %1 bytes; a theme file may have at most %2 bytes.")
                               .arg(QLocale().toString(size), QLocale().toString(4194304)));
        };
        const auto corrupt = [&](const QString& reason) {
            return failed("decoding JSON", x, "The data couldn't be read because it isn't valid JSON (" + reason + ").");
        };
        QTest::newRow("empty") << x << QByteArray() << corrupt("the document is empty");
        QTest::newRow("invalid UTF-8") << x << QByteArray(theme).replace("Big", "B\xC3\x28") << corrupt("the text is not valid UTF-8");
        // A number that is not JSON fails the document even beside a huge one that is.
        for (const QByteArray bad : {"01", "1.", "-", ".5", "1e", "+1", "1e309x", "1e309.5"})
            QTest::addRow("malformed number %s", bad.constData())
                << x << QByteArray(theme).replace("{", R"({"big": 1e309, "bad": )" + bad + ",") << corrupt("").chopped(2);
        QTest::newRow("binary garbage") << x << QByteArray::fromHex("00ff13e8c7a1b2007b22") << corrupt("").chopped(2);
        QTest::newRow("nested 100,000 deep") << x << QByteArray(100000, '[') + QByteArray(100000, ']')
                                             << corrupt("arrays and objects are nested more than 1024 levels deep");
        QTest::newRow("sparse 1 GB, refused unread") << x << QByteArray("sparse") << tooLarge(1ll << 30);
        QTest::newRow("one byte over 4 MiB") << x << theme + QByteArray(4194305 - theme.size(), ' ') << tooLarge(4194305);
        QTest::newRow("exactly 4 MiB") << x << theme + QByteArray(4194304 - theme.size(), ' ') << "x:Big";
        // A listed file is first read without asking its size: around the end of that first read (the
        // white space leads, so a file cut short is broken JSON).
        for (const int size : {65535, 65536, 65537})
            QTest::addRow("%d bytes", size) << x << QByteArray(size - theme.trimmed().size(), ' ') + theme.trimmed() << "x:Big";
        for (const char* kind : {"a FIFO (named pipe)", "a socket", "a device"})
            QTest::addRow("%s", kind) << x << QByteArray(kind)
                                      << reading(QStringLiteral("It is not a regular file but %1.").arg(kind));
        QTest::newRow("vanished") << x << QByteArray("vanished") << reading("The file doesn't exist.");
        QTest::newRow("newline in the name") << "a\nb.theme.json" << theme << "a\nb:Big"; // not two files "a" and "b"
        for (const QString name : {"100% %@ %1 a%20b #?.theme.json", "夜の海 ночь.theme.json", "\U0001F600.theme.json"})
            QTest::addRow("%s", qPrintable(name)) << name << grey << failed("decoding JSON", name, "Invalid style: grey");
    }

    void failsClearlyOnBadInput()
    {
        QFETCH(QString, fileName);
        QFETCH(QByteArray, content);
        QFETCH(QString, expected);

        QTemporaryDir directory;
        const QString path = directory.filePath(fileName);
        const QByteArray encoded = QFile::encodeName(path);
        std::shared_ptr<const DirectoryLister> lister = FileManager::shared();
        if (content == "a FIFO (named pipe)") {
            QCOMPARE(::mkfifo(encoded.constData(), 0644), 0);
        } else if (content == "a socket") {
            const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
            sockaddr_un address{AF_UNIX, {}};
            QVERIFY(size_t(encoded.size()) < sizeof address.sun_path);
            std::memcpy(address.sun_path, encoded.constData(), size_t(encoded.size()));
            QCOMPARE(::bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
            QCOMPARE(::listen(descriptor, 1), 0); // a reader that connected would wait
            ::close(descriptor);
        } else if (content == "a device") {
            QVERIFY(QFile::link("/dev/zero", path));
        } else if (content == "vanished") {
            lister = std::make_shared<Lister>(QList{QUrl::fromLocalFile(path)});
        } else {
            writeFile(directory.path(), fileName, content);
            QVERIFY(content != "sparse" || QFile(path).resize(1ll << 30));
        }

        const QString actual = read(directory.path(), lister).join(u'\n');
        QCOMPARE(expected.endsWith(u'(') ? actual.left(expected.size()) : actual, expected); // "(": only the start
    }

    // A missing directory is named by its URL, written so that it pastes back as the same location.
    void namesAMissingDirectoryByAWholeURL_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("written"); // how the name appears in the URL
        QTest::newRow("plain") << "Themes" << "Themes";
        QTest::newRow("space, per-cent and hash") << "with space%20#" << "with%20space%2520%23";
        QTest::newRow("question mark and brackets") << "a?b[1]" << "a%3Fb[1]";
        QTest::newRow("non-Latin") << "夜 ü" << "%E5%A4%9C%20%C3%BC";
    }

    void namesAMissingDirectoryByAWholeURL()
    {
        QFETCH(QString, name);
        QFETCH(QString, written);
        QTemporaryDir parent;
        const QString directory = parent.filePath(name + "/Themes");
        const auto themes = ThemeReader(std::make_shared<ThemeDecoder>(), FileManager::shared())
                                .readThemes(QUrl::fromLocalFile(directory));
        QVERIFY(!themes);
        const QString text = themes.error().errorDescription();
        const QString prefix = "Theme decoding failed: File at ", suffix = " appears not to be a directory.";
        QVERIFY2(text.startsWith(prefix) && text.endsWith(suffix), qPrintable(text));
        const QString url = text.mid(prefix.size()).chopped(suffix.size());
        QCOMPARE(url, QUrl::fromLocalFile(parent.path()).toString(QUrl::FullyEncoded) + '/' + written + "/Themes");
        QCOMPARE(QUrl(url, QUrl::StrictMode).toLocalFile(), directory);
    }

    // A large directory is decoded on two cores, in batches of files; the outcome must be the one of
    // reading the files one after another in listing order: the same themes in the same order, equal
    // names in listing order, and the failure of the first broken file in listing order, wherever
    // batches meet and whichever thread decodes them.
    void readsLargeDirectoriesAsInListingOrder_data()
    {
        QTest::addColumn<QList<int>>("broken"); // positions in the listing; negative: the file is missing
        QTest::newRow("nothing broken") << QList<int>{};
        QTest::newRow("early in the first batch") << QList<int>{10};
        QTest::newRow("last of a batch") << QList<int>{127};
        QTest::newRow("first of the next batch") << QList<int>{128};
        QTest::newRow("last file") << QList<int>{999};
        QTest::newRow("in two batches, the later listed first") << QList<int>{900, 100};
        QTest::newRow("in adjacent batches, the later listed first") << QList<int>{130, 127};
        QTest::newRow("missing in a later batch, broken in an earlier one") << QList<int>{-700, 300};
        QTest::newRow("missing in an earlier batch, broken in a later one") << QList<int>{600, -200};
    }

    void readsLargeDirectoriesAsInListingOrder()
    {
        QFETCH(QList<int>, broken);
        QTemporaryDir directory;
        const int count = 1000;
        // Fewer descriptors than files: a reader that kept its files open would run out.
        rlimit descriptors{};
        QCOMPARE(::getrlimit(RLIMIT_NOFILE, &descriptors), 0);
        const rlimit lowered{std::min<rlim_t>(512, descriptors.rlim_cur), descriptors.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_NOFILE, &lowered), 0);
        const auto restore = qScopeGuard([&] { ::setrlimit(RLIMIT_NOFILE, &descriptors); });
        // Listed in the reverse of the files' own order, so listing order is neither name order nor
        // creation order; a third of the names occur three times.
        QList<QUrl> listing;
        QStringList expected;
        for (int position = 0; position < count; ++position) {
            const QString file = QStringLiteral("t%1").arg(count - position, 4, 10, QLatin1Char('0'));
            const QString name = QStringLiteral("Theme %1").arg(position % 333, 3, 10, QLatin1Char('0'));
            listing << QUrl::fromLocalFile(directory.filePath(file + ".theme.json"));
            expected << file + ':' + name;
            if (broken.contains(-position))
                continue;
            writeFile(directory.path(), file + ".theme.json",
                      broken.contains(position) ? doc(R"("B")", R"("grey")", mara, one) : themeJson(name, "dark", {"A"}, "1"));
        }
        std::stable_sort(expected.begin(), expected.end(),
                         [](const QString& a, const QString& b) { return a.section(':', 1) < b.section(':', 1); });
        if (!broken.isEmpty()) {
            // What reading the first broken file alone gives.
            const int first = *std::min_element(broken.begin(), broken.end(),
                                                [](int a, int b) { return std::abs(a) < std::abs(b); });
            expected = read(directory.path(), std::make_shared<Lister>(QList{listing[std::abs(first)]}));
            QVERIFY(expected.size() == 1 && expected[0].startsWith("Theme decoding failed"));
        }
        QCOMPARE(read(directory.path(), std::make_shared<Lister>(listing)), expected);
    }

    void decoderReusesItsBuffersSafely_data()
    {
        QTest::addColumn<bool>("listedAsRegularFile");
        QTest::newRow("asked what each file is") << false;
        QTest::newRow("listed as regular, size learnt by reading") << true;
    }

    // The decoder keeps its buffers between files: what follows a large file must not see its bytes.
    void decoderReusesItsBuffersSafely()
    {
        QFETCH(bool, listedAsRegularFile);
        QTemporaryDir directory;
        ThemeDecoder decoder;
        const auto decode = [&](const QString& path) {
            const QByteArray name = QFile::encodeName(path);
            return decoder.decodeListedTheme(AT_FDCWD, {name, listedAsRegularFile}, [&] { return QUrl::fromLocalFile(path); });
        };
        const QString small = writeTheme(directory.path(), "s", "S", "light", {}, "1");
        const QString cut = writeFile(directory.path(), "c", R"({"name": "S")");
        for (const int padding : {100000, 1000000, 100000}) { // kept, given up, grown again
            const QByteArray json = themeJson("Large", "dark", {"A"}, "2").insert(1, "\"p\": \"" + QByteArray(padding, 'x') + "\",");
            QCOMPARE(decode(writeFile(directory.path(), "l", json))->identifier.name(), "Large");
            QVERIFY(!decode(cut));
            const auto theme = decode(small);
            QVERIFY(theme && theme->identifier.name() == "S" && theme->authors.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(ThemeReaderTest)
#include "ThemeReaderTest.moc"
