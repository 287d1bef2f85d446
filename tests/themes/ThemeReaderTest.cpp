// Reading a directory of theme files: which files are read, their order, the nested failure texts,
// and input that must fail clearly instead of crashing or hanging (FIFOs, sockets, huge files).

#include "Corvane/themes/FileManager.h"
#include "Corvane/themes/ThemeReader.h"

#include "ThemeFiles.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace corvane;
using corvane::test::themeJson;
using corvane::test::writeFile;
using corvane::test::writeTheme;

namespace {

// Lists real files in an order the test chooses, where the order matters and the platform's is not
// predictable.
class OrderedLister final : public DirectoryLister {
public:
    explicit OrderedLister(QList<QUrl> files) : m_files(std::move(files)) {}
    Result<QList<QUrl>, DirectoryListingError> filesInDirectory(const QUrl&) const override { return m_files; }

private:
    QList<QUrl> m_files;
};

ThemeReader readerWith(std::shared_ptr<const DirectoryLister> lister)
{
    return ThemeReader(std::make_shared<ThemeDecoder>(), std::move(lister));
}

ThemeReader realReader()
{
    return readerWith(FileManager::shared());
}

QString styleText(Theme::Style style)
{
    return style == Theme::Style::dark ? QStringLiteral("dark") : QStringLiteral("light");
}

QStringList namesOf(const QList<StoredTheme>& themes)
{
    QStringList names;
    for (const StoredTheme& stored : themes)
        names << stored.theme.identifier.name();
    return names;
}

QString decodingFailedText(const QString& path, const QString& inner)
{
    return QStringLiteral("Theme decoding failed: Could not decode JSON, decoding JSON from '%1' failed: %2").arg(path, inner);
}

QString readingFailedText(const QString& path, const QString& inner)
{
    return QStringLiteral("Theme decoding failed: Could not decode JSON, reading Data from '%1' failed: %2").arg(path, inner);
}

const QByteArray notJson = "this would fail if it were read";

} // namespace

class ThemeReaderTest : public QObject {
    Q_OBJECT

private slots:
    // Entries are "theme:<path>:<name>", "broken:<path>" (fails if read) or "dir:<path>".
    void readsOnlyThemeFiles_data()
    {
        QTest::addColumn<QStringList>("entries");
        QTest::addColumn<QStringList>("names");

        QTest::newRow("empty directory") << QStringList{} << QStringList{};
        QTest::newRow("other endings are never opened")
            << QStringList{"theme:a.theme.json:A", "broken:x.THEME.JSON", "broken:x.Theme.json",
                           "broken:x.theme.json.bak", "broken:readme.md", "broken:theme.json", "broken:x.themejson",
                           "broken:x.theme.json~"}
            << QStringList{"A"};
        QTest::newRow("only other files") << QStringList{"broken:readme.md", "broken:a.json"} << QStringList{};
        QTest::newRow("a file named just .theme.json") << QStringList{"theme:.theme.json:Dot"} << QStringList{"Dot"};
        QTest::newRow("hidden theme file") << QStringList{"theme:.hidden.theme.json:Hidden", "theme:a.theme.json:A"}
                                           << QStringList{"A", "Hidden"};
        QTest::newRow("directory named like a theme")
            << QStringList{"dir:sub.theme.json", "theme:a.theme.json:A"} << QStringList{"A"};
        QTest::newRow("files in subdirectories")
            << QStringList{"theme:sub/b.theme.json:B", "broken:sub.theme.json/c.theme.json", "theme:a.theme.json:A"}
            << QStringList{"A"};
    }

    void readsOnlyThemeFiles()
    {
        QFETCH(QStringList, entries);
        QFETCH(QStringList, names);

        QTemporaryDir directory;
        for (const QString& entry : std::as_const(entries)) {
            const QStringList parts = entry.split(u':');
            const QString path = directory.filePath(parts[1]);
            const QString folder = QFileInfo(path).path();
            if (parts[0] == u"dir")
                QVERIFY(QDir().mkpath(path));
            else if (parts[0] == u"theme")
                writeTheme(folder, QFileInfo(path).fileName(), parts[2], "dark", {"Mara"}, "1.0");
            else
                writeFile(folder, QFileInfo(path).fileName(), notJson);
        }

        const auto themes = realReader().readThemes(QUrl::fromLocalFile(directory.path()));
        QVERIFY2(themes, themes ? "" : qPrintable(themes.error().errorDescription()));
        QCOMPARE(namesOf(*themes), names);
        for (const StoredTheme& stored : *themes)
            QCOMPARE(QFileInfo(stored.url.toLocalFile()).path(), directory.path());
    }

    // Files as listed, each "file name|theme name|style"; expected as "theme name|style" in order.
    void sortsByName_data()
    {
        QTest::addColumn<QStringList>("listed");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("capitals before small letters")
            << QStringList{"1|alpha|dark", "2|Zen|dark"} << QStringList{"Zen|dark", "alpha|dark"};
        QTest::newRow("Alpha alpha beta")
            << QStringList{"1|beta|dark", "2|alpha|dark", "3|Alpha|dark"}
            << QStringList{"Alpha|dark", "alpha|dark", "beta|dark"};
        QTest::newRow("variants keep the listing order, dark first")
            << QStringList{"1|Ember|dark", "2|Ash|light", "3|Ember|light"}
            << QStringList{"Ash|light", "Ember|dark", "Ember|light"};
        QTest::newRow("variants keep the listing order, light first")
            << QStringList{"1|Ember|light", "2|Ash|light", "3|Ember|dark"}
            << QStringList{"Ash|light", "Ember|light", "Ember|dark"};
        QTest::newRow("composed form decides")
            << QStringList{QString::fromUtf8("1|e\u0301|dark"), "2|f|dark", "3|e|dark"}
            << QStringList{"e|dark", "f|dark", QString::fromUtf8("e\u0301|dark")};
        QTest::newRow("beyond U+FFFF after U+FFFD and private use")
            << QStringList{QString::fromUtf8("1|\U0001F600|dark"), QString::fromUtf8("2|\uFFFD|dark"),
                           QString::fromUtf8("3|\uE000|dark"), "4|z|dark"}
            << QStringList{"z|dark", QString::fromUtf8("\uE000|dark"), QString::fromUtf8("\uFFFD|dark"),
                           QString::fromUtf8("\U0001F600|dark")};
        QTest::newRow("variants stay in order beside astral names")
            << QStringList{QString::fromUtf8("1|\U0001F600|light"), "2|X|light", QString::fromUtf8("3|\U0001F600|dark"),
                           "4|X|dark"}
            << QStringList{"X|light", "X|dark", QString::fromUtf8("\U0001F600|light"),
                           QString::fromUtf8("\U0001F600|dark")};
        QTest::newRow("prefix first") << QStringList{"1|Ember Night|dark", "2|Ember|dark"}
                                      << QStringList{"Ember|dark", "Ember Night|dark"};
    }

    void sortsByName()
    {
        QFETCH(QStringList, listed);
        QFETCH(QStringList, expected);

        QTemporaryDir directory;
        QList<QUrl> files;
        QHash<QString, QString> writtenTo; // file name -> "name|style"
        for (const QString& entry : std::as_const(listed)) {
            const QStringList parts = entry.split(u'|');
            const QString fileName = parts[0] + QStringLiteral(".theme.json");
            files << QUrl::fromLocalFile(writeTheme(directory.path(), fileName, parts[1], parts[2], {}, "1"));
            writtenTo.insert(fileName, parts[1] + u'|' + parts[2]);
        }
        const auto themes = readerWith(std::make_shared<OrderedLister>(files)).readThemes(QUrl::fromLocalFile(directory.path()));
        QVERIFY(themes);
        QStringList order;
        for (const StoredTheme& stored : *themes) {
            const QString read = stored.theme.identifier.name() + u'|' + styleText(stored.theme.identifier.style());
            order << read;
            QCOMPARE(writtenTo.value(stored.url.fileName()), read); // each theme keeps its own file
        }
        QCOMPARE(order, expected);
    }

    // The platform's own listing order is not sorted; variants of one name follow it.
    void variantsFollowThePlatformListing()
    {
        QTemporaryDir directory;
        for (int index = 0; index < 20; ++index)
            writeTheme(directory.path(), QStringLiteral("v%1.theme.json").arg(index), "Same",
                       index % 2 ? "light" : "dark", {QString::number(index)}, "1");
        const auto listed = FileManager::shared()->filesInDirectory(QUrl::fromLocalFile(directory.path()));
        QVERIFY(listed);
        QStringList listingOrder;
        for (const QUrl& url : *listed)
            listingOrder << url.fileName();

        const auto themes = realReader().readThemes(QUrl::fromLocalFile(directory.path()));
        QVERIFY(themes);
        QStringList readOrder;
        for (const StoredTheme& stored : *themes)
            readOrder << stored.url.fileName();
        QCOMPARE(readOrder, listingOrder);
    }

    void describesFailuresInFull()
    {
        QTemporaryDir directory;
        const QString missing = directory.filePath("missing");
        auto themes = realReader().readThemes(QUrl::fromLocalFile(missing));
        QVERIFY(!themes);
        QCOMPARE(themes.error().errorDescription(),
                 QStringLiteral("Theme decoding failed: File at file://%1 appears not to be a directory.").arg(missing));

        const QString plainFile = writeFile(directory.path(), "plain", "x");
        themes = realReader().readThemes(QUrl::fromLocalFile(plainFile));
        QVERIFY(!themes);
        QCOMPARE(themes.error().errorDescription(),
                 QStringLiteral("Theme decoding failed: File at file://%1 appears not to be a directory.").arg(plainFile));

        const QString grey = writeTheme(directory.filePath("themes"), "grey.theme.json", "Grey", "grey", {}, "1");
        themes = realReader().readThemes(QUrl::fromLocalFile(directory.filePath("themes")));
        QVERIFY(!themes);
        QCOMPARE(themes.error().errorDescription(), decodingFailedText(grey, "Invalid style: grey"));
        QVERIFY(themes.error().error.as<JSONDecodingError>());
    }

    // The first broken file in listing order ends the reading and is the one reported; nothing
    // decoded before it is handed back.
    void firstBrokenFileWins_data()
    {
        QTest::addColumn<bool>("greyFirst");
        QTest::newRow("grey listed first") << true;
        QTest::newRow("nameless listed first") << false;
    }

    void firstBrokenFileWins()
    {
        QFETCH(bool, greyFirst);
        QTemporaryDir directory;
        const QUrl good = QUrl::fromLocalFile(writeTheme(directory.path(), "good.theme.json", "Good", "dark", {}, "1"));
        const QUrl grey = QUrl::fromLocalFile(writeTheme(directory.path(), "grey.theme.json", "Grey", "grey", {}, "1"));
        const QUrl nameless = QUrl::fromLocalFile(
            writeFile(directory.path(), "nameless.theme.json", R"({"style": "dark", "author": [], "version": "1"})"));
        const QList<QUrl> order = greyFirst ? QList<QUrl>{good, grey, nameless} : QList<QUrl>{good, nameless, grey};

        const auto themes = readerWith(std::make_shared<OrderedLister>(order)).readThemes(QUrl::fromLocalFile(directory.path()));
        QVERIFY(!themes);
        QCOMPARE(themes.error().errorDescription(),
                 greyFirst ? decodingFailedText(grey.toLocalFile(), "Invalid style: grey")
                           : decodingFailedText(nameless.toLocalFile(), "No value associated with key \"name\"."));
    }

    // Hostile or broken files in a theme directory (faults inside the JSON are the decoding test's):
    // each row prepares one file named "x.theme.json" and gives the inner text its failure must end
    // with (empty: it reads fine).
    void failsClearlyOnBadInput_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("whileReading"); // else while decoding
        QTest::addColumn<QString>("inner");

        QTest::newRow("empty file") << "empty" << false
                                    << "The data couldn't be read because it isn't valid JSON (the document is empty).";
        QTest::newRow("sparse 1 GB file") << "sparse" << true
                                          << "The file has 1073741824 bytes; a theme file may have at most 4194304 bytes.";
        QTest::newRow("one byte over 4 MiB") << "over-limit" << true
                                             << "The file has 4194305 bytes; a theme file may have at most 4194304 bytes.";
        QTest::newRow("exactly 4 MiB") << "at-limit" << false << "";
        QTest::newRow("FIFO") << "fifo" << true << "It is not a regular file but a FIFO (named pipe).";
        QTest::newRow("socket") << "socket" << true << "It is not a regular file but a socket.";
        QTest::newRow("link to a directory") << "link-to-directory" << true << "It is not a regular file but a directory.";
        QTest::newRow("link to a device") << "link-to-device" << true << "It is not a regular file but a device.";
        QTest::newRow("dangling link") << "dangling-link" << true << "The file doesn't exist.";
        QTest::newRow("link to a theme file") << "link-to-theme" << false << "";
    }

    void failsClearlyOnBadInput()
    {
        QFETCH(QString, kind);
        QFETCH(bool, whileReading);
        QFETCH(QString, inner);

        QTemporaryDir directory;
        const QString path = directory.filePath("x.theme.json");
        const QByteArray encoded = QFile::encodeName(path);
        if (kind == u"empty") {
            writeFile(directory.path(), "x.theme.json", {});
        } else if (kind == u"sparse" || kind == u"over-limit" || kind == u"at-limit") {
            QByteArray json = themeJson("Big", "dark", {}, "1");
            const qint64 size = kind == u"sparse" ? (qint64(1) << 30) : kind == u"over-limit" ? 4194305 : 4194304;
            if (kind != u"sparse")
                json += QByteArray(size - json.size(), ' ');
            writeFile(directory.path(), "x.theme.json", json);
            QFile file(path);
            QVERIFY(file.resize(size)); // a sparse file: nothing but a size beyond the content
        } else if (kind == u"fifo") {
            QCOMPARE(::mkfifo(encoded.constData(), 0644), 0);
        } else if (kind == u"socket") {
            const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
            sockaddr_un address{};
            address.sun_family = AF_UNIX;
            QVERIFY(size_t(encoded.size()) < sizeof address.sun_path);
            std::memcpy(address.sun_path, encoded.constData(), size_t(encoded.size()));
            QCOMPARE(::bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
            QCOMPARE(::listen(descriptor, 1), 0); // a listening socket: a reader that connected would wait
            ::close(descriptor);
        } else if (kind == u"link-to-directory") {
            QVERIFY(QDir().mkpath(directory.filePath("folder")));
            QVERIFY(QFile::link(directory.filePath("folder"), path));
        } else if (kind == u"link-to-device") {
            QVERIFY(QFile::link("/dev/zero", path));
        } else if (kind == u"dangling-link") {
            QVERIFY(QFile::link(directory.filePath("gone.json"), path));
        } else if (kind == u"link-to-theme") {
            writeTheme(directory.filePath("elsewhere"), "real.json", "Linked", "light", {}, "1");
            QVERIFY(QFile::link(directory.filePath("elsewhere/real.json"), path));
        }

        const auto themes = realReader().readThemes(QUrl::fromLocalFile(directory.path()));
        if (inner.isEmpty()) {
            QVERIFY2(themes, themes ? "" : qPrintable(themes.error().errorDescription()));
            QCOMPARE(themes->size(), 1);
            return;
        }
        QVERIFY(!themes);
        QCOMPARE(themes.error().errorDescription(), whileReading ? readingFailedText(path, inner) : decodingFailedText(path, inner));
    }

    // A file listed and then removed before it is read: a reading error naming the file.
    void vanishedFileIsAReadingError()
    {
        QTemporaryDir directory;
        const QString kept = writeTheme(directory.path(), "a.theme.json", "A", "dark", {}, "1");
        const QString gone = writeTheme(directory.path(), "b.theme.json", "B", "dark", {}, "1");
        const auto listed = FileManager::shared()->filesInDirectory(QUrl::fromLocalFile(directory.path()));
        QVERIFY(listed);
        QVERIFY(QFile::remove(gone));

        const auto themes = readerWith(std::make_shared<OrderedLister>(*listed)).readThemes(QUrl::fromLocalFile(directory.path()));
        QVERIFY(!themes);
        QCOMPARE(themes.error().errorDescription(), readingFailedText(gone, "The file doesn't exist."));
        QVERIFY(QFile::exists(kept));
    }

    // File names are data: newlines, per cent signs and placeholders pass through unchanged.
    void fileNamesPassThrough_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::newRow("newline") << "line\nbreak.theme.json";
        QTest::newRow("per cent") << "100% dark.theme.json";
        QTest::newRow("placeholder") << "%@ and %1.theme.json";
        QTest::newRow("percent-encoded look") << "a%20b.theme.json";
        QTest::newRow("URL characters") << "#hash?query.theme.json";
        QTest::newRow("non-Latin") << QString::fromUtf8("夜の海 ночь.theme.json");
        QTest::newRow("astral") << QString::fromUtf8("\U0001F600.theme.json");
    }

    void fileNamesPassThrough()
    {
        QFETCH(QString, fileName);
        QTemporaryDir directory;
        writeTheme(directory.path(), fileName, "Named", "dark", {}, "1");
        auto themes = realReader().readThemes(QUrl::fromLocalFile(directory.path()));
        QVERIFY2(themes, themes ? "" : qPrintable(themes.error().errorDescription()));
        QCOMPARE(themes->size(), 1);
        QCOMPARE(themes->first().url.fileName(), fileName);
        QCOMPARE(themes->first().url.toLocalFile(), directory.filePath(fileName));

        const QString broken = writeTheme(directory.path(), fileName, "Named", "grey", {}, "1");
        themes = realReader().readThemes(QUrl::fromLocalFile(directory.path()));
        QVERIFY(!themes);
        QCOMPARE(themes.error().errorDescription(), decodingFailedText(broken, "Invalid style: grey"));
    }

    // The decoder keeps its buffer between files: a short file after a long one must not see the
    // long one's bytes.
    void decoderReusesItsBufferSafely()
    {
        QTemporaryDir directory;
        QByteArray longTheme = themeJson("Long", "dark", {"A"}, "2");
        longTheme.insert(1, "\"pad\": \"" + QByteArray(200000, 'x') + "\",");
        const QString longPath = writeFile(directory.path(), "long.theme.json", longTheme);
        const QString shortPath = writeFile(directory.path(), "short.theme.json", R"({"name": "S")");
        ThemeDecoder decoder;
        QCOMPARE(decoder.decodeTheme(QUrl::fromLocalFile(longPath))->identifier.name(), QStringLiteral("Long"));
        const auto cut = decoder.decodeTheme(QUrl::fromLocalFile(shortPath));
        QVERIFY(!cut);
        QVERIFY(cut.error().errorDescription().startsWith(QStringLiteral("Could not decode JSON, decoding JSON from '%1' failed: The data couldn't be read").arg(shortPath)));
    }
};

QTEST_GUILESS_MAIN(ThemeReaderTest)
#include "ThemeReaderTest.moc"
