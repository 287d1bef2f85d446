// SPDX-License-Identifier: MIT
// The file manager's crash-safe install and moving to the Trash, on real files with a real Trash under a
// temporary XDG_DATA_HOME.

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/sources/LocalThemeFetcher.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/themes/FileNameEncoding.h"
#include "Corvane/themes/InstallLeftovers.h"
#include "Corvane/themes/InstalledDirectoryLock.h"
#include "Corvane/themes/ThemeDecoder.h"

#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QDir>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace corvane;
using namespace corvane::test;

namespace {

QString errorText(const Result<void, AnyError>& result)
{
    return result ? QString() : result.error().errorDescription();
}

int modeOf(const QString& path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 07777) : -1;
}

} // namespace

class FileManagerTest : public QObject {
    Q_OBJECT

private slots:
    // Listed URLs are made by hand for speed; they must be exactly the ones Qt makes of the paths.
    void listsFilesAsQtsOwnURLs_data()
    {
        QTest::addColumn<QString>("directoryName");
        QTest::addColumn<QString>("fileName");

        QTest::newRow("plain") << "themes" << "a.theme.json";
        QTest::newRow("URL delimiters and spaces") << "my themes" << "a #1? [x] {y} ;=&+$,!'()*@:~.theme.json";
        QTest::newRow("percent signs") << "50%25" << "a%20b%41.theme.json"; // each a valid escape if taken as one
        QTest::newRow("non-Latin and combining") << "\u591c" << "Cafe\u0301 \u043d\u043e\u0447\u044c \U0001F600.theme.json";
        QTest::newRow("control characters") << "t" << "a\nb\tc\x01.theme.json";
        QTest::newRow("backslash and quotes") << "t" << "a\\b\"c`d|e^.theme.json";
    }

    void listsFilesAsQtsOwnURLs()
    {
        QFETCH(QString, directoryName);
        QFETCH(QString, fileName);

        QTemporaryDir root;
        const QString directory = root.filePath(directoryName);
        QVERIFY(QDir().mkpath(directory));
        const QString path = writeFile(directory, fileName, "{}");
        const auto listed = FileManager::shared()->filesInDirectory(QUrl::fromLocalFile(directory));
        QVERIFY(listed);
        QCOMPARE(*listed, QList{QUrl::fromLocalFile(path)});
        QCOMPARE(listed->first().toString(QUrl::FullyEncoded), QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
    }

    // Installs clone/ember.theme.json as installed/ember.theme.json, which holds "old" unless the setup
    // says otherwise. In the error, {s} is the source, {d} the destination and {i} its directory.
    void installs_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("error"); // empty: installed; ending in a space: only the start

        const QString copy = "Could not copy '{s}' to '{d}': ";
        QTest::newRow("new theme") << "new" << "";
        QTest::newRow("update, the old file to the Trash") << "update" << "";
        QTest::newRow("link leading nowhere") << "dangling link" << "";
        QTest::newRow("source missing") << "source missing" << copy + "Could not read '{s}': The file doesn't exist.";
        QTest::newRow("source a FIFO") << "source FIFO"
                                       << copy + "Could not read '{s}': It is not a regular file but a FIFO (named pipe).";
        QTest::newRow("directory missing") << "no directory" << copy + "The directory '{i}' doesn't exist.";
        QTest::newRow("directory at the destination, to the Trash") << "directory" << "";
        QTest::newRow("Trash refuses the old file") << "no Trash" << "Could not move '{d}' to the Trash: ";
    }

    void installs()
    {
        QFETCH(QString, setup);
        QFETCH(QString, error);

        TrashSandbox trash;
        QTemporaryDir root;
        QString source = writeFile(root.filePath("clone"), "ember.theme.json", "new");
        QVERIFY(QFile::setPermissions(source, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
        const QString installed = root.filePath(setup == u"no directory" ? "gone/installed" : "installed");
        const QString destination = installed + "/ember.theme.json";
        if (setup == u"new")
            QVERIFY(QDir().mkpath(installed));
        else if (setup != u"no directory")
            writeFile(installed, "ember.theme.json", "old");
        if (setup == u"source missing") {
            source = root.filePath("clone/missing");
        } else if (setup == u"source FIFO") {
            source = root.filePath("clone/fifo");
            QCOMPARE(::mkfifo(QFile::encodeName(source).constData(), 0644), 0);
        } else if (setup == u"dangling link") {
            QVERIFY(QFile::remove(destination) && QFile::link(root.filePath("nowhere"), destination));
        } else if (setup == u"directory") {
            QVERIFY(QFile::remove(destination));
            writeFile(destination, "inside", "old");
        } else if (setup == u"no Trash") { // a file where the Trash keeps its files
            writeFile(QFileInfo(trash.filesDirectory()).path(), "files", "");
        }

        const auto copied = FileManager::shared()->copy({source, destination});
        error.replace("{s}", source).replace("{d}", destination).replace("{i}", installed);
        QCOMPARE(error.endsWith(u' ') ? errorText(copied).left(error.size()) : errorText(copied), error);
        // Whatever happened, no temporary file is left (hidden ones included), and a failure leaves the old file.
        QCOMPARE(QDir(installed).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot),
                 setup == u"no directory" ? QStringList{} : QStringList{"ember.theme.json"});
        QVERIFY(!QFileInfo::exists(root.filePath("gone")));
        if (setup != u"no directory")
            QCOMPARE(readFile(destination), error.isEmpty() ? "new" : "old");
        // Whatever stood at the destination is in the Trash now: file, directory or link.
        const bool replaced = error.isEmpty() && setup != u"new";
        QCOMPARE(trash.trashedNames(), replaced ? QStringList{"ember.theme.json"} : QStringList{});
        const QString trashed = trash.filesDirectory() + "/ember.theme.json";
        QCOMPARE(readFile(setup == u"directory" ? trashed + "/inside" : trashed),
                 replaced && setup != u"dangling link" ? "old" : "");
        QCOMPARE(QFileInfo(trashed).isSymLink(), setup == u"dangling link");
        if (error.isEmpty()) {
            QVERIFY(!QFileInfo(destination).isSymLink());
            QCOMPARE(QFileInfo(destination).permissions(), QFileInfo(source).permissions());
        }
    }

    void movesToTheTrash_data()
    {
        QTest::addColumn<QString>("what");
        QTest::addColumn<QString>("error"); // {p} is the item's path; empty: moved

        QTest::newRow("file") << "file" << "";
        QTest::newRow("directory with content") << "directory" << "";
        QTest::newRow("link leading nowhere") << "link" << "";
        QTest::newRow("missing") << "missing" << "Could not move '{p}' to the Trash: The file doesn't exist.";
        // Moving into such a Trash would never return.
        for (const char* folder : {"info", "files"})
            QTest::addRow("the Trash's %s folder a file", folder)
                << QStringLiteral("%1 a file").arg(folder) << "Could not move '{p}' to the Trash: The Trash refused it.";
    }

    void movesToTheTrash()
    {
        QFETCH(QString, what);
        QFETCH(QString, error);

        TrashSandbox trash;
        QTemporaryDir root;
        const QString path = root.filePath("item");
        const bool brokenTrash = what.endsWith(u" a file");
        if (what == u"file" || brokenTrash)
            writeFile(root.path(), "item", "x");
        if (brokenTrash)
            writeFile(QFileInfo(trash.filesDirectory()).path(), what.section(u' ', 0, 0), "not a folder");
        else if (what == u"directory")
            writeFile(path + "/.git", "HEAD", "x");
        else if (what == u"link")
            QVERIFY(QFile::link(root.filePath("nowhere"), path));

        QCOMPARE(errorText(FileManager::shared()->deleteItem(QUrl::fromLocalFile(path))), error.replace("{p}", path));
        QVERIFY(!QFileInfo(path).isSymLink());
        QCOMPARE(QFileInfo::exists(path), brokenTrash);
        QCOMPARE(trash.trashedNames(), error.isEmpty() ? QStringList{"item"} : QStringList{});
        QCOMPARE(QFileInfo(trash.filesDirectory() + "/item").isSymLink(), what == u"link");
        if (what != u"link")
            QCOMPARE(readFile(trash.filesDirectory() + (what == u"file" ? "/item" : "/item/.git/HEAD")), error.isEmpty() ? "x" : "");
        // Every item in the Trash has its info file, and no info file is left without its item.
        QCOMPARE(QDir(trash.infoDirectory()).entryList(QDir::Files), error.isEmpty() ? QStringList{"item.trashinfo"} : QStringList{});
    }
    // A fresh account has no data home yet: it is made (mode 0700) with its Trash, and only a data
    // home that truly cannot be made refuses the move. {t} is the temporary directory, {p} the item.
    void makesTheTrashOnAFreshAccount_data()
    {
        QTest::addColumn<QString>("xdgDataHome"); // empty: unset
        QTest::addColumn<QString>("expectedDataHome");
        QTest::addColumn<QString>("error");

        QTest::newRow("XDG_DATA_HOME missing, with its parents") << "{t}/fresh/data" << "{t}/fresh/data" << "";
        QTest::newRow("no XDG_DATA_HOME: ~/.local/share") << "" << "{t}/home/.local/share" << "";
        QTest::newRow("a relative XDG_DATA_HOME is ignored") << "relative/share" << "{t}/home/.local/share" << "";
        QTest::newRow("a file where the data home belongs")
            << "{t}/plain/share" << "" << "Could not move '{p}' to the Trash: A file, not a directory, stands at '{t}/plain'.";
    }

    void makesTheTrashOnAFreshAccount()
    {
        QFETCH(QString, xdgDataHome);
        QFETCH(QString, expectedDataHome);
        QFETCH(QString, error);

        TrashSandbox sandbox; // restores XDG_DATA_HOME afterwards
        QTemporaryDir root;
        const QByteArray previousHome = qgetenv("HOME");
        const auto restoreHome = qScopeGuard([&] { qputenv("HOME", previousHome); });
        qputenv("HOME", QFile::encodeName(root.filePath("home")));
        const auto filled = [&](QString text) { return text.replace("{t}", root.path()).replace("{p}", root.filePath("item")); };
        if (xdgDataHome.isEmpty())
            qunsetenv("XDG_DATA_HOME");
        else
            qputenv("XDG_DATA_HOME", QFile::encodeName(filled(xdgDataHome)));
        writeFile(root.path(), "plain", "");
        const QString item = writeFile(root.path(), "item", "x");

        QCOMPARE(errorText(FileManager::shared()->deleteItem(QUrl::fromLocalFile(item))), filled(error));
        QCOMPARE(QFileInfo::exists(item), !error.isEmpty());
        if (error.isEmpty()) {
            const QString dataHome = filled(expectedDataHome);
            QCOMPARE(readFile(dataHome + "/Trash/files/item"), "x");
            QVERIFY(QFileInfo::exists(dataHome + "/Trash/info/item.trashinfo"));
            for (const QString& made : {dataHome, dataHome + "/Trash", dataHome + "/Trash/files", dataHome + "/Trash/info"})
                QCOMPARE(modeOf(made), 0700);
        }
    }

    // Info files follow the Trash rules: the original path URL-escaped, the local deletion time; a
    // second item of the same name gets a name of its own.
    void writesTrashEntries()
    {
        TrashSandbox trash;
        QTemporaryDir root;
        const QString first = writeFile(root.filePath("a dir"), "50% ember.theme.json", "first");
        QVERIFY(FileManager::shared()->deleteItem(QUrl::fromLocalFile(first)));
        const QString second = writeFile(root.filePath("a dir"), "50% ember.theme.json", "second");
        QVERIFY(FileManager::shared()->deleteItem(QUrl::fromLocalFile(second)));

        QCOMPARE(trash.trashedNames(), (QStringList{"50% ember (2).theme.json", "50% ember.theme.json"}));
        QCOMPARE(readFile(trash.filesDirectory() + "/50% ember (2).theme.json"), "second");
        const QByteArray info = readFile(trash.infoDirectory() + "/50% ember (2).theme.json.trashinfo");
        const QRegularExpression format("^\\[Trash Info\\]\nPath=(.*)\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n$");
        const auto match = format.match(QString::fromUtf8(info));
        QVERIFY2(match.hasMatch(), info.constData());
        QVERIFY(!match.captured(1).contains(u' '));
        QCOMPARE(QString::fromUtf8(QByteArray::fromPercentEncoding(match.captured(1).toUtf8())), second);
    }

    // What a killed install leaves is removed by the next reading of the directory, unless an install
    // into it is running: its temporary files, and info files in the Trash whose item never arrived.
    void removesTheLeftoversOfKilledInstalls_data()
    {
        QTest::addColumn<bool>("installRunning");
        QTest::newRow("no install running") << false;
        QTest::newRow("an install running") << true;
    }

    void removesTheLeftoversOfKilledInstalls()
    {
        QFETCH(bool, installRunning);
        TrashSandbox trash;
        QTemporaryDir root;
        const QString installed = root.filePath("installed");
        writeFile(installed, ".corvane-install-Ab12Cd", "half");
        writeFile(installed, ".corvane-installed-by-hand", "the user's");
        writeFile(installed, "ember.theme.json", "kept");
        const auto info = [&](const QString& name, const QString& original) {
            return writeFile(trash.infoDirectory(), name + ".trashinfo",
                             "[Trash Info]\nPath=" + QUrl::toPercentEncoding(original, "/") + "\nDeletionDate=2026-01-01T00:00:00\n");
        };
        info("orphan.theme.json", installed + "/orphan.theme.json");
        info("elsewhere.theme.json", root.filePath("elsewhere/elsewhere.theme.json"));
        info("whole.theme.json", installed + "/whole.theme.json");
        writeFile(trash.filesDirectory(), "whole.theme.json", "whole");

        std::optional<InstalledDirectoryLock> running;
        if (installRunning)
            running.emplace(QFile::encodeName(installed), InstalledDirectoryLock::Wait::never);
        InstallLeftovers::removeFrom(QUrl::fromLocalFile(installed));

        const QStringList all = {".corvane-install-Ab12Cd", ".corvane-installed-by-hand", "ember.theme.json"};
        QCOMPARE(QDir(installed).entryList(QDir::Files | QDir::Hidden, QDir::Name), installRunning ? all : all.mid(1));
        const QStringList infos = {"elsewhere.theme.json.trashinfo", "orphan.theme.json.trashinfo", "whole.theme.json.trashinfo"};
        QCOMPARE(QDir(trash.infoDirectory()).entryList(QDir::Files, QDir::Name),
                 installRunning ? infos : (QStringList{infos[0], infos[2]}));
    }

    // Installed themes on another file system than the data home: the Trash at the top of their own
    // mount, as the Trash rules choose it. Needs a tmpfs, mounted by the test where it may.
    void usesTheTrashOfTheItemsFileSystem_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("expectedTrash"); // {u} is the user id
        QTest::newRow("no .Trash") << "" << ".Trash-{u}";
        QTest::newRow("a sticky .Trash made by the administrator") << "sticky" << ".Trash/{u}";
        QTest::newRow(".Trash without the sticky bit is not used") << "not sticky" << ".Trash-{u}";
        QTest::newRow(".Trash a link to a sticky directory is not used") << "link" << ".Trash-{u}";
    }

    void usesTheTrashOfTheItemsFileSystem()
    {
        QFETCH(QString, setup);
        QFETCH(QString, expectedTrash);

        TrashSandbox trash;
        QTemporaryDir mountPoint;
        if (::mount("tmpfs", QFile::encodeName(mountPoint.path()).constData(), "tmpfs", 0, "size=1m,mode=0755") != 0)
            QSKIP(qPrintable("No tmpfs can be mounted here (" + qt_error_string(errno)
                             + "): the Trash on another file system is not tested."));
        const auto unmount = qScopeGuard([&] { ::umount2(QFile::encodeName(mountPoint.path()).constData(), MNT_DETACH); });
        const QString top = mountPoint.path();
        if (setup == u"sticky" || setup == u"not sticky") {
            QVERIFY(QDir().mkdir(top + "/.Trash"));
            QCOMPARE(::chmod(QFile::encodeName(top + "/.Trash").constData(), setup == u"sticky" ? 01777 : 0777), 0);
        } else if (setup == u"link") {
            QVERIFY(QDir().mkdir(top + "/shared"));
            QCOMPARE(::chmod(QFile::encodeName(top + "/shared").constData(), 01777), 0);
            QVERIFY(QFile::link(top + "/shared", top + "/.Trash"));
        }
        const QString installed = top + "/themes";
        const QString source = writeFile(trash.dataHome() + "/clone", "ember.theme.json", "new");
        writeFile(installed, "ember.theme.json", "old");

        QCOMPARE(errorText(FileManager::shared()->copy({source, installed + "/ember.theme.json"})), QString());
        QCOMPARE(readFile(installed + "/ember.theme.json"), "new");
        const QString used = top + '/' + expectedTrash.replace("{u}", QString::number(::getuid()));
        QCOMPARE(readFile(used + "/files/ember.theme.json"), "old");
        // Paths in a top-directory Trash are relative to its mount.
        QVERIFY(readFile(used + "/info/ember.theme.json.trashinfo").contains("\nPath=themes/ember.theme.json\n"));
        QCOMPARE(modeOf(used), 0700);
        QCOMPARE(trash.trashedNames(), QStringList{});
    }

    // Names that are not UTF-8 keep their bytes through text and back; text no file can be named
    // with is refused, never written as a look-alike.
    void keepsTheBytesOfFileNames_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("UTF-8") << QByteArray("caf\xc3\xa9 \xf0\x9f\x98\x80.theme.json");
        QTest::newRow("Latin-1") << QByteArray("old\xff.theme.json");
        QTest::newRow("two stray bytes") << QByteArray("bad\xff\xfename.theme.json");
        QTest::newRow("cut sequence") << QByteArray("a\xe2\x82.theme.json");
        QTest::newRow("overlong slash") << QByteArray("a\xc0\xaf.theme.json");
        QTest::newRow("encoded surrogate") << QByteArray("a\xed\xa0\x80.theme.json");
        QTest::newRow("beyond U+10FFFF") << QByteArray("a\xf4\x90\x80\x80.theme.json");
        QTest::newRow("emoji next to a stray byte") << QByteArray("\xf0\x9f\x98\x80\x80.theme.json");
    }

    void keepsTheBytesOfFileNames()
    {
        QFETCH(QByteArray, name);
        QCOMPARE(FileNameEncoding::encode(FileNameEncoding::decode(name)), std::optional<QByteArray>(name));
        if (QString::fromUtf8(name).toUtf8() == name)
            QCOMPARE(FileNameEncoding::decode(name), QString::fromUtf8(name));

        // Listed, then replaced under the very same name, the old file in the Trash under its own bytes.
        TrashSandbox trash;
        QTemporaryDir root;
        const QString installed = root.filePath("installed");
        writeFileNamed(installed, name, "the old one");
        const auto listed = FileManager::shared()->filesInDirectory(QUrl::fromLocalFile(installed));
        QVERIFY(listed && listed->size() == 1);
        const QString source = writeFile(root.filePath("clone"), "ember.theme.json", "new");
        QCOMPARE(errorText(FileManager::shared()->copy({source, listed->first().toLocalFile()})), QString());
        QCOMPARE(encodedNames(installed), QList<QByteArray>{name});
        struct stat status; // QFile cannot open such a name: it passes names through text
        QCOMPARE(::stat((QFile::encodeName(installed) + '/' + name).constData(), &status), 0);
        QCOMPARE(status.st_size, 3); // "new", not "old"
        QCOMPARE(encodedNames(trash.filesDirectory()), QList<QByteArray>{name});
    }

    void refusesNamesNoFileCanHave()
    {
        TrashSandbox trash;
        QTemporaryDir root;
        const QString source = writeFile(root.filePath("clone"), "ember.theme.json", "new");
        const QString destination = root.filePath("a") + QChar(0xD800) + ".theme.json";
        QCOMPARE(errorText(FileManager::shared()->copy({source, destination})),
                 "Could not copy '" + source + "' to '" + destination + "': The name '" + destination
                     + "' cannot be represented as a file name.");
        const QStringList left = QDir(root.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        QCOMPARE(left, QStringList{"clone"});
    }

    // The installed-themes directory is made where missing; what stands in its way is named.
    void preparesTheInstalledDirectory_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("error"); // {p}: the directory's path
        QTest::newRow("missing, with its parent") << "missing" << "";
        QTest::newRow("a link to a directory") << "link to directory" << "";
        QTest::newRow("a link leading nowhere")
            << "dangling link"
            << "Local theme fetching error: File error: Could not create the directory '{p}': "
               "A symbolic link to something that doesn't exist stands at '{p}'.";
        QTest::newRow("a plain file")
            << "file" << "Local theme fetching error: File error: Could not create the directory '{p}': "
                         "A file, not a directory, stands at '{p}'.";
    }

    void preparesTheInstalledDirectory()
    {
        QFETCH(QString, setup);
        QFETCH(QString, error);
        QTemporaryDir root;
        const QString installed = root.filePath("parent/installed");
        QVERIFY(QDir().mkpath(root.filePath("parent")) && QDir().mkpath(root.filePath("target")));
        if (setup == u"link to directory")
            QVERIFY(QFile::link(root.filePath("target"), installed));
        else if (setup == u"dangling link")
            QVERIFY(QFile::link(root.filePath("nowhere"), installed));
        else if (setup == u"file")
            writeFile(root.filePath("parent"), "installed", "");
        else
            QVERIFY(QDir(root.filePath("parent")).removeRecursively());

        LocalThemeFetcher fetcher(QUrl::fromLocalFile(installed),
                                  std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), FileManager::shared()),
                                  FileManager::shared());
        const auto fetched = fetcher.fetchLocalThemes();
        QCOMPARE(fetched ? QString() : fetched.error().errorDescription(), error.replace("{p}", installed));
        QCOMPARE(QFileInfo(installed).isDir(), error.isEmpty());
    }
};

QTEST_GUILESS_MAIN(FileManagerTest)
#include "FileManagerTest.moc"
