// SPDX-License-Identifier: MIT
// The file manager's crash-safe install and moving to the Trash, on real files with a real Trash under a
// temporary XDG_DATA_HOME.

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/themes/FileManager.h"

#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace corvane;
using namespace corvane::test;

namespace {

QString errorText(const Result<void, AnyError>& result)
{
    return result ? QString() : result.error().errorDescription();
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
        QTest::newRow("directory at the destination") << "directory" << copy + "A directory stands at the destination.";
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
            QCOMPARE(readFile(setup == u"directory" ? destination + "/inside" : destination), error.isEmpty() ? "new" : "old");
        QCOMPARE(trash.trashedNames(), setup == u"update" ? QStringList{"ember.theme.json"} : QStringList{});
        QCOMPARE(readFile(trash.filesDirectory() + "/ember.theme.json"), setup == u"update" ? "old" : "");
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
        QTest::newRow("link leading nowhere")
            << "link" << "Could not move '{p}' to the Trash: It is a symbolic link to something that doesn't exist.";
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
        QCOMPARE(QFileInfo(path).isSymLink(), what == u"link");
        QCOMPARE(QFileInfo::exists(path), brokenTrash);
        QCOMPARE(trash.trashedNames(), error.isEmpty() ? QStringList{"item"} : QStringList{});
        QCOMPARE(readFile(trash.filesDirectory() + (what == u"file" ? "/item" : "/item/.git/HEAD")), error.isEmpty() ? "x" : "");
    }
};

QTEST_GUILESS_MAIN(FileManagerTest)
#include "FileManagerTest.moc"
