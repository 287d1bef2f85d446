// SPDX-License-Identifier: MIT
#include "Corvane/themes/FileManager.h"

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/module/Localized.h"
#include "Corvane/module/TextError.h"
#include "Corvane/themes/Descriptor.h"
#include "Corvane/themes/LocalFileURL.h"
#include "Corvane/themes/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

std::unexpected<AnyError> fail(QString text)
{
    return std::unexpected(AnyError(TextError{std::move(text)}));
}

// The directory part of a local path, without a trailing slash ("/" stays "/").
QString parentOf(const QString& path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash <= 0)
        return QStringLiteral("/");
    return path.left(slash);
}

// Writes all of the source into the target; 0 or the errno of the failure.
int copyContent(int source, int target)
{
    char chunk[64 * 1024];
    while (true) {
        const ssize_t count = ::read(source, chunk, sizeof chunk);
        if (count < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        if (count == 0)
            return 0;
        for (ssize_t written = 0; written < count;) {
            const ssize_t step = ::write(target, chunk + written, static_cast<std::size_t>(count - written));
            if (step < 0) {
                if (errno == EINTR)
                    continue;
                return errno;
            }
            written += step;
        }
    }
}

QString trashFailure(const QString& path, const QString& reason)
{
    //% "Could not move '%@' to the Trash: %@"
    const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.trash-failed"),
                                           "Could not move '%@' to the Trash: %@");
    return fillPlaceholders(format, {path, reason});
}

// Whether a path names an item inside a freedesktop Trash: <trash>/files/<name>, where the Trash is a
// "Trash" directory, ".Trash/<uid>" or ".Trash-<uid>".
bool isInATrash(const QString& trashedPath)
{
    const QFileInfo trashed(trashedPath);
    if (!trashed.isAbsolute())
        return false;
    const QDir files = trashed.dir();
    if (files.dirName() != QLatin1StringView("files"))
        return false;
    const QString trash = QFileInfo(files.absolutePath()).dir().dirName();
    const QString above = QFileInfo(QFileInfo(files.absolutePath()).absolutePath()).dir().dirName();
    return trash == QLatin1StringView("Trash") || trash.startsWith(QLatin1StringView(".Trash-"))
        || above == QLatin1StringView(".Trash");
}

// Whether a Trash that exists has something other than a folder where its "files" or "info" folder
// belongs. Qt's move to the Trash tries name after name in "info" until it can make one there, and in
// such a Trash it never can: it would never return.
bool isBrokenTrash(const QString& trash)
{
    struct stat status;
    if (::stat(QFile::encodeName(trash).constData(), &status) != 0)
        return false; // made afresh when needed
    if (!S_ISDIR(status.st_mode))
        return true;
    for (const QLatin1StringView part : {QLatin1StringView("/files"), QLatin1StringView("/info")}) {
        const QByteArray folder = QFile::encodeName(trash + part);
        struct stat linkStatus;
        if (::lstat(folder.constData(), &linkStatus) == 0
            && (::stat(folder.constData(), &status) != 0 || !S_ISDIR(status.st_mode)))
            return true;
    }
    return false;
}

// The Trashes Qt may choose for an item: the user's own, and those at the top of the item's file
// system when that is another one ("<top>/.Trash/<uid>", "<top>/.Trash-<uid>").
QStringList trashesFor(const QString& path)
{
    QStringList trashes{QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Trash")};
    struct stat item;
    if (::lstat(QFile::encodeName(path).constData(), &item) != 0)
        return trashes;
    QString top = QFileInfo(path).absolutePath();
    while (top != u'/') {
        const QString parent = QFileInfo(top).absolutePath();
        struct stat above;
        if (::stat(QFile::encodeName(parent).constData(), &above) != 0 || above.st_dev != item.st_dev)
            break;
        top = parent;
    }
    const QString base = top == u'/' ? QString() : top;
    const QString uid = QString::number(::getuid());
    trashes << base + QStringLiteral("/.Trash/") + uid << base + QStringLiteral("/.Trash-") + uid;
    return trashes;
}

// Moves one item to the Trash; empty on success, else the reason.
QString moveToTrash(const QString& path)
{
    const QStringList trashes = trashesFor(path);
    if (std::any_of(trashes.cbegin(), trashes.cend(), isBrokenTrash)) {
        //% "The Trash refused it."
        return localizedString(QT_TRID_NOOP("corvane.file-manager.trash-refused"), "The Trash refused it.");
    }
    QFile item(path);
    if (item.moveToTrash()) {
        if (isInATrash(item.fileName()))
            return {};
        // When it cannot make the user's Trash, Qt takes the working directory for one: the item must
        // not stay in such a surprising place, so it goes back and the Trash counts as refusing it.
        const QString stray = item.fileName();
        if (::rename(QFile::encodeName(stray).constData(), QFile::encodeName(path).constData()) == 0) {
            const QFileInfo strayFile(stray);
            QFile::remove(strayFile.dir().filePath(QStringLiteral("../info/%1.trashinfo").arg(strayFile.fileName())));
            QDir(strayFile.dir()).rmdir(QStringLiteral("../info"));
            QDir().rmdir(strayFile.path());
        }
        //% "The Trash refused it."
        return localizedString(QT_TRID_NOOP("corvane.file-manager.trash-refused"), "The Trash refused it.");
    }
    const QByteArray encoded = QFile::encodeName(path);
    struct stat status;
    if (::lstat(encoded.constData(), &status) != 0)
        return RegularFile::describeErrno(errno);
    if (S_ISLNK(status.st_mode) && ::stat(encoded.constData(), &status) != 0) {
        //% "It is a symbolic link to something that doesn't exist."
        return localizedString(QT_TRID_NOOP("corvane.file-manager.dangling-link"),
                               "It is a symbolic link to something that doesn't exist.");
    }
    QString reason = item.errorString();
    if (reason.isEmpty()) {
        //% "The Trash refused it."
        reason = localizedString(QT_TRID_NOOP("corvane.file-manager.trash-refused"), "The Trash refused it.");
    }
    return reason;
}

} // namespace

std::shared_ptr<FileManager> FileManager::shared()
{
    static const std::shared_ptr<FileManager> instance = std::make_shared<FileManager>();
    return instance;
}

Result<DirectoryEntries, DirectoryListingError> FileManager::entriesInDirectory(const QUrl& directory) const
{
    const auto notADirectory = [&directory] {
        return std::unexpected(DirectoryListingError(DirectoryListingError::NotADirectory{directory}));
    };
    if (!directory.isLocalFile())
        return notADirectory();
    const QByteArray encoded = QFile::encodeName(directory.toLocalFile());
    struct stat status;
    if (encoded.isEmpty() || ::stat(encoded.constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return notADirectory();

    DIR* listing = ::opendir(encoded.constData());
    if (!listing) {
        return std::unexpected(DirectoryListingError(
            DirectoryListingError::ListingFailed{TextError{RegularFile::describeErrno(errno)}}));
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> closer(listing, ::closedir);

    DirectoryEntries entries;
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(listing);
        if (!entry) {
            if (errno != 0) {
                return std::unexpected(DirectoryListingError(
                    DirectoryListingError::ListingFailed{TextError{RegularFile::describeErrno(errno)}}));
            }
            break;
        }
        const char* name = entry->d_name;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;
        // An entry counts as what it is itself: a symbolic link is a file entry even when it points
        // at a directory (reading it then fails with a clear reason), as the platform's is-directory
        // property of a listed link says too.
        unsigned char type = entry->d_type;
        if (type == DT_UNKNOWN) {
            struct stat entryStatus;
            if (::fstatat(::dirfd(listing), name, &entryStatus, AT_SYMLINK_NOFOLLOW) != 0)
                continue; // gone since it was listed
            type = S_ISDIR(entryStatus.st_mode) ? DT_DIR : S_ISREG(entryStatus.st_mode) ? DT_REG : DT_UNKNOWN;
        }
        if (type == DT_DIR)
            continue;
        entries.append(QByteArrayView(name), type == DT_REG);
    }
    return entries;
}

Result<QList<QUrl>, DirectoryListingError> FileManager::filesInDirectory(const QUrl& directory) const
{
    return map(entriesInDirectory(directory), [&directory](const DirectoryEntries& entries) {
        const QString base = DirectoryEntries::pathPrefix(directory);
        QList<QUrl> files;
        files.reserve(entries.size());
        for (qsizetype index = 0; index < entries.size(); ++index)
            files.append(localFileURL(DirectoryEntries::localPath(base, entries[index].encodedName)));
        return files;
    });
}

Result<void, AnyError> FileManager::createDirectoryIfNeeded(const QUrl& directory) const
{
    const QString path = directory.toLocalFile();
    const auto failed = [&path](const QString& reason) {
        //% "Could not create the directory '%@': %@"
        const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.create-directory-failed"),
                                               "Could not create the directory '%@': %@");
        return fail(fillPlaceholders(format, {path, reason}));
    };
    if (!directory.isLocalFile() || path.isEmpty()) {
        //% "It is not a local path."
        return failed(localizedString(QT_TRID_NOOP("corvane.file-manager.not-local"), "It is not a local path."));
    }

    // Each missing component in turn, so that the failure names the component that could not be made.
    qsizetype from = 1;
    while (true) {
        const qsizetype slash = path.indexOf(u'/', from);
        const QString component = slash < 0 ? path : path.left(slash);
        const QByteArray encoded = QFile::encodeName(component);
        struct stat status;
        if (::stat(encoded.constData(), &status) == 0) {
            if (!S_ISDIR(status.st_mode)) {
                //% "A file, not a directory, stands at '%@'."
                const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.file-in-the-way"),
                                                       "A file, not a directory, stands at '%@'.");
                return failed(fillPlaceholders(format, {component}));
            }
        } else if (errno != ENOENT || (::mkdir(encoded.constData(), 0777) != 0 && errno != EEXIST)) {
            return failed(RegularFile::describeErrno(errno));
        }
        if (slash < 0 || slash + 1 >= path.size())
            return {};
        from = slash + 1;
    }
}

Result<void, AnyError> FileManager::copy(const CopyCommand& command) const
{
    const QString& sourcePath = command.sourcePath;
    const QString& destinationPath = command.destinationPath;
    const auto failed = [&](const QString& reason) {
        //% "Could not copy '%@' to '%@': %@"
        const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.copy-failed"),
                                               "Could not copy '%@' to '%@': %@");
        return fail(fillPlaceholders(format, {sourcePath, destinationPath, reason}));
    };
    if (!QDir::isAbsolutePath(sourcePath) || !QDir::isAbsolutePath(destinationPath) || destinationPath.endsWith(u'/')) {
        //% "Both must be local file paths."
        return failed(localizedString(QT_TRID_NOOP("corvane.file-manager.copy-not-local"),
                                      "Both must be local file paths."));
    }

    auto source = RegularFile::open(sourcePath);
    if (!source) {
        //% "Could not read '%@': %@"
        const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.source-unreadable"),
                                               "Could not read '%@': %@");
        return failed(fillPlaceholders(format, {sourcePath, source.error().text}));
    }

    const QByteArray destination = QFile::encodeName(destinationPath);
    struct stat existing;
    // A link at the destination that leads nowhere holds nothing to keep: the new file just replaces it.
    struct stat linked;
    const bool replacing = ::lstat(destination.constData(), &existing) == 0
        && (!S_ISLNK(existing.st_mode) || ::stat(destination.constData(), &linked) == 0);
    if (replacing && S_ISDIR(existing.st_mode)) {
        // A theme file never replaces a whole directory: that would move someone's folder to the Trash.
        //% "A directory stands at the destination."
        return failed(localizedString(QT_TRID_NOOP("corvane.file-manager.directory-in-the-way"),
                                      "A directory stands at the destination."));
    }

    // The new content goes to a hidden temporary file beside the destination first, so that the
    // destination only ever holds a whole file: the old one, or the new one.
    const QString directory = parentOf(destinationPath);
    QByteArray temporary = QFile::encodeName(directory) + "/.corvane-install-XXXXXX";
    Descriptor target(::mkostemp(temporary.data(), O_CLOEXEC));
    if (target.get() < 0) {
        const int code = errno;
        if (code == ENOENT || code == ENOTDIR) {
            //% "The directory '%@' doesn't exist."
            const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.no-directory"),
                                                   "The directory '%@' doesn't exist.");
            return failed(fillPlaceholders(format, {directory}));
        }
        return failed(RegularFile::describeErrno(code));
    }
    const auto discard = [&temporary] { ::unlink(temporary.constData()); };

    int code = copyContent(source->descriptor(), target.get());
    if (code == 0 && ::fchmod(target.get(), source->mode() & 07777) != 0)
        code = errno;
    if (code == 0 && ::fsync(target.get()) != 0)
        code = errno;
    if (const int closing = target.close(); code == 0)
        code = closing;
    if (code != 0) {
        discard();
        return failed(RegularFile::describeErrno(code));
    }

    if (replacing) {
        if (const QString reason = moveToTrash(destinationPath); !reason.isNull()) {
            discard();
            return fail(trashFailure(destinationPath, reason));
        }
    }
    if (::rename(temporary.constData(), destination.constData()) != 0) {
        code = errno;
        discard();
        return failed(RegularFile::describeErrno(code));
    }
    // Make the rename itself durable; a failure here leaves a complete file in place, so it is ignored.
    if (const int directoryDescriptor = ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        directoryDescriptor >= 0) {
        ::fsync(directoryDescriptor);
        ::close(directoryDescriptor);
    }
    return {};
}

Result<void, AnyError> FileManager::deleteItem(const QUrl& url) const
{
    const QString path = url.toLocalFile();
    if (!url.isLocalFile() || path.isEmpty()) {
        return fail(trashFailure(url.toString(),
                                 localizedString(QT_TRID_NOOP("corvane.file-manager.not-local"), "It is not a local path.")));
    }
    if (const QString reason = moveToTrash(path); !reason.isNull())
        return fail(trashFailure(path, reason));
    return {};
}

} // namespace corvane
