// The file manager against the real file system and a real Trash (under a temporary XDG_DATA_HOME):
// listing, creating directories, crash-safe installing and moving to the Trash, with real faults.

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/module/TextError.h"
#include "Corvane/themes/FileManager.h"

#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <fcntl.h>
#include <unistd.h>

using namespace corvane;
using corvane::test::readFile;
using corvane::test::TrashSandbox;
using corvane::test::writeFile;

namespace {

QStringList sortedNames(const QList<QUrl>& urls)
{
    QStringList names;
    for (const QUrl& url : urls)
        names << url.fileName();
    names.sort();
    return names;
}

// Everything in a directory, hidden entries too, so a leftover temporary file would show.
QStringList entriesOf(const QString& directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

// Marks a file immutable while it lives: not even root can rename it, so moving it to the Trash fails
// for real. Not every file system (or container) allows the flag; then the test that needs it is skipped.
class ImmutableFile {
public:
    explicit ImmutableFile(const QString& path) : m_path(QFile::encodeName(path)) { m_set = setFlag(true); }
    ~ImmutableFile()
    {
        if (m_set)
            setFlag(false);
    }
    bool isSet() const { return m_set; }

private:
    bool setFlag(bool on)
    {
        const int descriptor = ::open(m_path.constData(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0)
            return false;
        int flags = 0;
        bool done = ::ioctl(descriptor, FS_IOC_GETFLAGS, &flags) == 0;
        flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
        done = done && ::ioctl(descriptor, FS_IOC_SETFLAGS, &flags) == 0;
        ::close(descriptor);
        return done;
    }

    QByteArray m_path;
    bool m_set = false;
};

QString errorText(const Result<void, AnyError>& result)
{
    return result ? QString() : result.error().errorDescription();
}

} // namespace

class FileManagerTest : public QObject {
    Q_OBJECT

private slots:
    void listsFilesShallowly()
    {
        QTemporaryDir directory;
        writeFile(directory.path(), "a.theme.json", "{}");
        writeFile(directory.path(), ".hidden", "x");
        writeFile(directory.filePath("sub"), "nested.theme.json", "{}");
        QVERIFY(QDir().mkpath(directory.filePath("folder.theme.json")));
        // Links count as what they are themselves, not as their targets.
        QVERIFY(QFile::link(directory.filePath("sub"), directory.filePath("link-to-directory")));
        QVERIFY(QFile::link(directory.filePath("nowhere"), directory.filePath("dangling")));
        QCOMPARE(::mkfifo(QFile::encodeName(directory.filePath("fifo")).constData(), 0644), 0);

        const auto files = FileManager::shared()->filesInDirectory(QUrl::fromLocalFile(directory.path()));
        QVERIFY(files);
        QCOMPARE(sortedNames(*files),
                 (QStringList{".hidden", "a.theme.json", "dangling", "fifo", "link-to-directory"}));
        for (const QUrl& url : *files) {
            QVERIFY(url.isLocalFile());
            QCOMPARE(QFileInfo(url.toLocalFile()).path(), directory.path());
        }
    }

    void listsThroughALinkedDirectoryAndTrailingSlash()
    {
        QTemporaryDir directory;
        writeFile(directory.filePath("real"), "a.theme.json", "{}");
        QVERIFY(QFile::link(directory.filePath("real"), directory.filePath("link")));
        for (const QString& path : {directory.filePath("link"), directory.filePath("real") + u'/'}) {
            const auto files = FileManager::shared()->filesInDirectory(QUrl::fromLocalFile(path));
            QVERIFY(files);
            QCOMPARE(files->size(), 1);
            QCOMPARE(files->first().fileName(), QStringLiteral("a.theme.json"));
            QVERIFY(!files->first().toLocalFile().contains(u"//"));
        }
    }

    void refusesWhatIsNotADirectory_data()
    {
        QTest::addColumn<QString>("what");
        QTest::newRow("missing") << "missing";
        QTest::newRow("plain file") << "file";
        QTest::newRow("link to a file") << "link-to-file";
        QTest::newRow("not a file URL") << "remote";
    }

    void refusesWhatIsNotADirectory()
    {
        QFETCH(QString, what);
        QTemporaryDir directory;
        QUrl url = QUrl::fromLocalFile(directory.filePath(what));
        if (what == u"file")
            writeFile(directory.path(), what, "x");
        if (what == u"link-to-file")
            QVERIFY(QFile::link(writeFile(directory.path(), "target", "x"), directory.filePath(what)));
        if (what == u"remote")
            url = QUrl(QStringLiteral("https://example.invalid/themes"));

        const auto files = FileManager::shared()->filesInDirectory(url);
        QVERIFY(!files);
        QCOMPARE(files.error(), DirectoryListingError(DirectoryListingError::NotADirectory{url}));
        QCOMPARE(files.error().errorDescription(),
                 QStringLiteral("File at %1 appears not to be a directory.").arg(url.toString()));
    }

    void comparesListingErrors_data()
    {
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("right");
        QTest::addColumn<bool>("equal");
        // 0, 1: not a directory at two URLs; 2, 3: listing failures with different reasons.
        QTest::newRow("same URL") << 0 << 0 << true;
        QTest::newRow("other URL") << 0 << 1 << false;
        QTest::newRow("listing failures with different reasons") << 2 << 3 << true;
        QTest::newRow("different cases") << 0 << 2 << false;
    }

    void comparesListingErrors()
    {
        QFETCH(int, left);
        QFETCH(int, right);
        QFETCH(bool, equal);
        const QList<DirectoryListingError> errors{
            DirectoryListingError::NotADirectory{QUrl::fromLocalFile("/a")},
            DirectoryListingError::NotADirectory{QUrl::fromLocalFile("/b")},
            DirectoryListingError::ListingFailed{TextError{QStringLiteral("Permission denied.")}},
            DirectoryListingError::ListingFailed{TextError{QStringLiteral("Input/output error.")}},
        };
        QCOMPARE(errors[left] == errors[right], equal);
        QCOMPARE(errors[right] == errors[left], equal);
        QCOMPARE(errors[2].errorDescription(),
                 QStringLiteral("Listing files in the directory failed. Reason: Permission denied."));
    }

    void createsDirectories_data()
    {
        QTest::addColumn<QString>("prepare"); // "", "exists", "file-at-path", "file-at-parent"
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("error"); // the component named in the failure; empty: success

        QTest::newRow("missing with missing parents") << "" << "a/b/c" << "";
        QTest::newRow("existing directory") << "exists" << "a" << "";
        QTest::newRow("trailing slash") << "" << "a/b/" << "";
        QTest::newRow("file at the path") << "file-at-path" << "a" << "a";
        QTest::newRow("file at a parent") << "file-at-parent" << "a/b/c" << "a";
    }

    void createsDirectories()
    {
        QFETCH(QString, prepare);
        QFETCH(QString, path);
        QFETCH(QString, error);

        QTemporaryDir root;
        if (prepare == u"exists") {
            writeFile(root.filePath("a"), "keep", "x");
        } else if (prepare.startsWith(u"file")) {
            writeFile(root.path(), "a", "a file");
        }
        const auto created = FileManager::shared()->createDirectoryIfNeeded(QUrl::fromLocalFile(root.filePath(path)));
        if (error.isEmpty()) {
            QVERIFY2(created, qPrintable(errorText(created)));
            QVERIFY(QFileInfo(root.filePath(path)).isDir());
            if (prepare == u"exists")
                QCOMPARE(readFile(root.filePath("a/keep")), QByteArray("x"));
        } else {
            QVERIFY(!created);
            QCOMPARE(errorText(created),
                     QStringLiteral("Could not create the directory '%1': A file, not a directory, stands at '%2'.")
                         .arg(root.filePath(path), root.filePath(error)));
            QCOMPARE(readFile(root.filePath("a")), QByteArray("a file"));
        }
    }

    // Installing: the new content in place, the old file in the Trash, no temporary file left.
    void installsAndTrashesTheOldFile_data()
    {
        QTest::addColumn<bool>("replacing");
        QTest::newRow("new theme") << false;
        QTest::newRow("update") << true;
    }

    void installsAndTrashesTheOldFile()
    {
        QFETCH(bool, replacing);
        TrashSandbox trash;
        QTemporaryDir root;
        const QString source = writeFile(root.filePath("clone/Themes"), "ember.theme.json", "new content");
        QFile(source).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        const QString installed = root.filePath("installed");
        QVERIFY(QDir().mkpath(installed));
        if (replacing)
            writeFile(installed, "ember.theme.json", "old content");

        const CopyCommand command{QUrl::fromLocalFile(source), QUrl::fromLocalFile(installed + "/ember.theme.json")};
        const auto copied = FileManager::shared()->copy(command);
        QVERIFY2(copied, qPrintable(errorText(copied)));
        QCOMPARE(readFile(installed + "/ember.theme.json"), QByteArray("new content"));
        QCOMPARE(entriesOf(installed), QStringList{"ember.theme.json"});
        QCOMPARE(QFileInfo(installed + "/ember.theme.json").permissions(), QFileInfo(source).permissions());
        QCOMPARE(readFile(source), QByteArray("new content"));
        if (replacing) {
            QCOMPARE(trash.trashedNames(), QStringList{"ember.theme.json"});
            QCOMPARE(readFile(trash.filesDirectory() + "/ember.theme.json"), QByteArray("old content"));
        } else {
            QVERIFY(trash.trashedNames().isEmpty());
        }
    }

    // Real faults: each leaves the old file where it was, removes the temporary file and names the files.
    void failedInstallKeepsTheOldFile_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("reason");

        QTest::newRow("source missing") << "source-missing" << "Could not read '%1': The file doesn't exist.";
        QTest::newRow("source is a FIFO") << "source-fifo" << "Could not read '%1': It is not a regular file but a FIFO (named pipe).";
        QTest::newRow("source is a directory") << "source-directory" << "Could not read '%1': It is not a regular file but a directory.";
        QTest::newRow("destination directory missing") << "no-destination-directory" << "The directory '%3' doesn't exist.";
        QTest::newRow("directory at the destination") << "directory-at-destination" << "A directory stands at the destination.";
        QTest::newRow("old file cannot be moved to the Trash") << "old-file-immutable" << "";
    }

    void failedInstallKeepsTheOldFile()
    {
        QFETCH(QString, fault);
        QFETCH(QString, reason);

        TrashSandbox trash;
        QTemporaryDir root;
        QString source = writeFile(root.filePath("clone"), "ember.theme.json", "new content");
        QString installed = root.filePath("installed");
        const QString oldContent = QStringLiteral("old content");
        writeFile(installed, "ember.theme.json", oldContent.toUtf8());

        if (fault == u"source-missing") {
            source = root.filePath("clone/missing.theme.json");
        } else if (fault == u"source-fifo") {
            source = root.filePath("clone/fifo.theme.json");
            QCOMPARE(::mkfifo(QFile::encodeName(source).constData(), 0644), 0);
        } else if (fault == u"source-directory") {
            source = root.filePath("clone");
        } else if (fault == u"no-destination-directory") {
            installed = root.filePath("not-there/installed");
        } else if (fault == u"directory-at-destination") {
            QVERIFY(QFile::remove(installed + "/ember.theme.json"));
            writeFile(installed + "/ember.theme.json", "inside", "kept");
        }
        std::optional<ImmutableFile> immutable;
        if (fault == u"old-file-immutable") {
            immutable.emplace(installed + "/ember.theme.json");
            if (!immutable->isSet())
                QSKIP("this file system does not let the test make a file immutable");
        }
        const QString destination = installed + "/ember.theme.json";

        const auto copied = FileManager::shared()->copy({QUrl::fromLocalFile(source), QUrl::fromLocalFile(destination)});
        QVERIFY(!copied);
        const QString text = errorText(copied);
        if (fault == u"old-file-immutable") {
            QVERIFY2(text.startsWith(QStringLiteral("Could not move '%1' to the Trash: ").arg(destination)), qPrintable(text));
        } else {
            const QString expected = QStringLiteral("Could not copy '%1' to '%2': ").arg(source, destination)
                + QString(reason).replace("%1", source).replace("%3", installed);
            QCOMPARE(text, expected);
        }

        if (fault == u"no-destination-directory") {
            QVERIFY(!QFileInfo::exists(root.filePath("not-there"))); // copying creates no directory
        } else if (fault == u"directory-at-destination") {
            QCOMPARE(readFile(destination + "/inside"), QByteArray("kept"));
            QCOMPARE(entriesOf(installed), QStringList{"ember.theme.json"});
        } else {
            QCOMPARE(readFile(destination), oldContent.toUtf8());
            QCOMPARE(entriesOf(installed), QStringList{"ember.theme.json"});
        }
        QVERIFY(trash.trashedNames().isEmpty());
    }

    void installReplacesALinkThatLeadsNowhere()
    {
        TrashSandbox trash;
        QTemporaryDir root;
        const QString source = writeFile(root.filePath("clone"), "ember.theme.json", "new content");
        const QString destination = root.filePath("installed/ember.theme.json");
        QVERIFY(QDir().mkpath(root.filePath("installed")));
        QVERIFY(QFile::link(root.filePath("nowhere"), destination));
        const auto copied = FileManager::shared()->copy({QUrl::fromLocalFile(source), QUrl::fromLocalFile(destination)});
        QVERIFY2(copied, qPrintable(errorText(copied)));
        QVERIFY(!QFileInfo(destination).isSymLink());
        QCOMPARE(readFile(destination), QByteArray("new content"));
        QVERIFY(trash.trashedNames().isEmpty());
    }

    void deletesByMovingToTheTrash_data()
    {
        QTest::addColumn<QString>("what");
        QTest::newRow("file") << "file";
        QTest::newRow("directory with content") << "directory";
        QTest::newRow("dangling link") << "link";
    }

    void deletesByMovingToTheTrash()
    {
        QFETCH(QString, what);
        TrashSandbox trash;
        QTemporaryDir root;
        const QString path = root.filePath("item");
        if (what == u"file")
            writeFile(root.path(), "item", "x");
        else if (what == u"directory")
            writeFile(path + "/.git", "HEAD", "ref");
        else
            QVERIFY(QFile::link(root.filePath("nowhere"), path));

        const auto deleted = FileManager::shared()->deleteItem(QUrl::fromLocalFile(path));
        if (what == u"link") {
            // The platform's Trash takes no link that leads nowhere; it stays, and the reason says why.
            QCOMPARE(errorText(deleted), QStringLiteral("Could not move '%1' to the Trash: It is a symbolic link "
                                                        "to something that doesn't exist.").arg(path));
            QVERIFY(QFileInfo(path).isSymLink());
            QVERIFY(trash.trashedNames().isEmpty());
            return;
        }
        QVERIFY2(deleted, qPrintable(errorText(deleted)));
        QVERIFY(!QFileInfo(path).exists() && !QFileInfo(path).isSymLink());
        QCOMPARE(trash.trashedNames(), QStringList{"item"});
        if (what == u"directory")
            QCOMPARE(readFile(trash.filesDirectory() + "/item/.git/HEAD"), QByteArray("ref"));
    }

    void deletingWhatIsNotThereFails()
    {
        TrashSandbox trash;
        QTemporaryDir root;
        const QString path = root.filePath("missing");
        const auto deleted = FileManager::shared()->deleteItem(QUrl::fromLocalFile(path));
        QVERIFY(!deleted);
        QCOMPARE(errorText(deleted), QStringLiteral("Could not move '%1' to the Trash: The file doesn't exist.").arg(path));
    }
};

QTEST_GUILESS_MAIN(FileManagerTest)
#include "FileManagerTest.moc"
