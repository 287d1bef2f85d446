// SPDX-License-Identifier: MIT
#include "Corvane/themes/FileManager.h"

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/module/Localized.h"
#include "Corvane/module/TextError.h"
#include "Corvane/themes/DeferredSync.h"
#include "Corvane/themes/Descriptor.h"
#include "Corvane/themes/FileNameEncoding.h"
#include "Corvane/themes/InstallLeftovers.h"
#include "Corvane/themes/InstalledDirectoryLock.h"
#include "Corvane/themes/LocalFileURL.h"
#include "Corvane/themes/RegularFile.h"
#include "Corvane/themes/SourceThemeChanged.h"
#include "Corvane/themes/ThemeDecoder.h"
#include "Corvane/themes/ThemeJsonParser.h"
#include "Corvane/themes/Trash.h"
#include "Corvane/undo/InstallRecord.h"

#include <QCryptographicHash>

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <optional>

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

// Writes `length` bytes to the target; 0 or the errno of the failure.
int writeContent(int target, const char* data, std::size_t length)
{
    for (std::size_t written = 0; written < length;) {
        const ssize_t step = ::write(target, data + written, length - written);
        if (step < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        written += std::size_t(step);
    }
    return 0;
}

// Whether the bytes hold the theme a row was made from: same name (canonically), style and version.
bool holdsTheme(const char* data, std::size_t length, const CopyCommand::SourceTheme& expected)
{
    thread_local ThemeJsonParser parser;
    const auto theme = parser.decodePadded(data, length);
    return theme && theme->identifier == expected.identifier && theme->version == expected.version;
}

// Writes all of the source into the target, adding it to `digest` when given; 0 or the errno of the
// failure.
int copyContent(int source, int target, QCryptographicHash* digest)
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
        if (digest)
            digest->addData(QByteArrayView(chunk, count));
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
    //% "Could not move '%1' to the Trash: %2"
    const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.trash-failed"),
                                           "Could not move '%1' to the Trash: %2");
    return fillPlaceholders(format, {path, reason});
}

QString unrepresentable(const QString& path)
{
    //% "The name '%1' cannot be represented as a file name."
    const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.name-not-representable"),
                                           "The name '%1' cannot be represented as a file name.");
    return fillPlaceholders(format, {FileNameEncoding::displayed(path)});
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
    const QByteArray encoded = FileNameEncoding::encodeOrEmpty(directory.toLocalFile());
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
        //% "Could not create the directory '%1': %2"
        const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.create-directory-failed"),
                                               "Could not create the directory '%1': %2");
        return fail(fillPlaceholders(format, {FileNameEncoding::displayed(path), reason}));
    };
    if (!directory.isLocalFile() || path.isEmpty()) {
        //% "It is not a local path."
        return failed(localizedString(QT_TRID_NOOP("corvane.file-manager.not-local"), "It is not a local path."));
    }

    const std::optional<QByteArray> encodedPath = FileNameEncoding::encode(path);
    if (!encodedPath)
        return failed(unrepresentable(path));

    // Each missing component in turn, so that the failure names the component that could not be made.
    qsizetype from = 1;
    while (true) {
        const qsizetype slash = encodedPath->indexOf('/', from);
        const QByteArray encoded = slash < 0 ? *encodedPath : encodedPath->left(slash);
        const QString component = FileNameEncoding::displayed(FileNameEncoding::decode(encoded));
        struct stat status;
        bool made = false;
        if (::stat(encoded.constData(), &status) != 0) {
            if (errno != ENOENT)
                return failed(RegularFile::describeErrno(errno));
            made = ::mkdir(encoded.constData(), 0777) == 0;
            // EEXIST although nothing was there: made by someone else meanwhile, or a link to nothing.
            if (!made && (errno != EEXIST || ::stat(encoded.constData(), &status) != 0)) {
                const int code = errno;
                struct stat link;
                if (code == ENOENT && ::lstat(encoded.constData(), &link) == 0 && S_ISLNK(link.st_mode)) {
                    // mkdir does not follow a link, and making its target is not ours to decide.
                    //% "A symbolic link to something that doesn't exist stands at '%1'."
                    const QString format = localizedString(
                        QT_TRID_NOOP("corvane.file-manager.dangling-link-in-the-way"),
                        "A symbolic link to something that doesn't exist stands at '%1'.");
                    return failed(fillPlaceholders(format, {component}));
                }
                return failed(RegularFile::describeErrno(code));
            }
        }
        if (!made && !S_ISDIR(status.st_mode)) {
            //% "A file, not a directory, stands at '%1'."
            const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.file-in-the-way"),
                                                   "A file, not a directory, stands at '%1'.");
            return failed(fillPlaceholders(format, {component}));
        }
        if (slash < 0 || slash + 1 >= encodedPath->size())
            return {};
        from = slash + 1;
    }
}

Result<void, AnyError> FileManager::copy(const CopyCommand& command) const
{
    const QString& sourcePath = command.sourcePath;
    const QString& destinationPath = command.destinationPath;
    const auto failed = [&](const QString& reason) {
        //% "Could not copy '%1' to '%2': %3"
        const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.copy-failed"),
                                               "Could not copy '%1' to '%2': %3");
        return fail(fillPlaceholders(format, {FileNameEncoding::displayed(sourcePath),
                                              FileNameEncoding::displayed(destinationPath), reason}));
    };
    if (!QDir::isAbsolutePath(sourcePath) || !QDir::isAbsolutePath(destinationPath) || destinationPath.endsWith(u'/')) {
        //% "Both must be local file paths."
        return failed(localizedString(QT_TRID_NOOP("corvane.file-manager.copy-not-local"),
                                      "Both must be local file paths."));
    }
    // Names keep their bytes: a theme file whose name is not UTF-8 is read and replaced under that
    // very name, never under a look-alike.
    const std::optional<QByteArray> sourceName = FileNameEncoding::encode(sourcePath);
    if (!sourceName)
        return failed(unrepresentable(sourcePath));
    const std::optional<QByteArray> destinationName = FileNameEncoding::encode(destinationPath);
    if (!destinationName)
        return failed(unrepresentable(destinationPath));
    const QByteArray& destination = *destinationName;

    const auto changed = [&] { return std::unexpected(AnyError(SourceThemeChanged{command.sourceFileName()})); };
    auto source = RegularFile::openAt(AT_FDCWD, sourceName->constData(), false);
    struct stat sourceStatus;
    if (!source && command.sourceTheme && ::lstat(sourceName->constData(), &sourceStatus) != 0 && errno == ENOENT)
        return changed(); // renamed or removed upstream since the list was made
    if (!source) {
        //% "Could not read '%1': %2"
        const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.source-unreadable"),
                                               "Could not read '%1': %2");
        return failed(fillPlaceholders(format, {FileNameEncoding::displayed(sourcePath), source.error().text}));
    }

    // A row's theme is checked in the very bytes that are then written, so what lands is what the row
    // showed, whatever a synchronisation does to the clone meanwhile.
    std::unique_ptr<char[]> content;
    std::size_t contentCapacity = 0;
    std::optional<std::size_t> contentLength;
    if (command.sourceTheme) {
        const auto read = source->readAll(content, contentCapacity, ThemeJsonParser::padding, ThemeDecoder::maximumFileSize);
        if (!read || !holdsTheme(content.get(), *read, *command.sourceTheme))
            return changed();
        contentLength = *read;
    }

    // Installs into one directory take turns, so that the removal of a killed install's leftovers
    // never takes the temporary file of one still running.
    const QByteArray directory = destination.left(std::max<qsizetype>(destination.lastIndexOf('/'), 1));
    const InstalledDirectoryLock lock(directory, InstalledDirectoryLock::Wait::untilFree);
    // A batch that can be undone notes what it wrote and where what it replaced went.
    InstallRecord* const record = InstallRecord::activeFor(directory);
    std::optional<QCryptographicHash> digest;
    if (record)
        digest.emplace(QCryptographicHash::Sha256);
    const QByteArray recordedName = record ? destination.mid(destination.lastIndexOf('/') + 1) : QByteArray();

    // The new content goes to a hidden temporary file beside the destination first, so that the
    // destination only ever holds a whole file: the old one, or the new one.
    QByteArray temporary = directory + '/' + InstallLeftovers::temporaryPrefix.toByteArray() + "XXXXXX";
    Descriptor target(::mkostemp(temporary.data(), O_CLOEXEC));
    if (target.get() < 0) {
        const int code = errno;
        if (code == ENOENT || code == ENOTDIR) {
            //% "The directory '%1' doesn't exist."
            const QString format = localizedString(QT_TRID_NOOP("corvane.file-manager.no-directory"),
                                                   "The directory '%1' doesn't exist.");
            return failed(fillPlaceholders(format, {FileNameEncoding::displayed(parentOf(destinationPath))}));
        }
        return failed(RegularFile::describeErrno(code));
    }
    const auto discard = [&temporary] { ::unlink(temporary.constData()); };

    if (digest && contentLength)
        digest->addData(QByteArrayView(content.get(), qsizetype(*contentLength)));
    int code = contentLength ? writeContent(target.get(), content.get(), *contentLength)
                             : copyContent(source->descriptor(), target.get(), digest ? &*digest : nullptr);
    if (code == 0 && ::fchmod(target.get(), source->mode() & 07777) != 0)
        code = errno;
    // The data is on disk before the rename that shows it, or, in a run of installs, with the run.
    if (code == 0 && !DeferredSync::defer(directory) && ::fsync(target.get()) != 0)
        code = errno;
    if (const int closing = target.close(); code == 0)
        code = closing;
    if (code != 0) {
        discard();
        return failed(RegularFile::describeErrno(code));
    }

    // Whatever stands at the destination goes to the Trash, never away for good: an old theme file,
    // a directory, a symbolic link (even one that leads nowhere).
    struct stat existing;
    QByteArray trashedItem;
    if (::lstat(destination.constData(), &existing) == 0) {
        if (record)
            record->noteReplacing(recordedName);
        auto trashed = Trash::moveItem(destination);
        if (!trashed) {
            if (record)
                record->noteCopied(recordedName, {}, {});
            discard();
            return fail(trashFailure(FileNameEncoding::displayed(destinationPath), trashed.error().text));
        }
        trashedItem = std::move(*trashed);
    }
    if (::rename(temporary.constData(), destination.constData()) != 0) {
        code = errno;
        // The replaced file is in the Trash with nothing in its place: undo can still bring it back.
        if (record)
            record->noteCopied(recordedName, {}, trashedItem);
        discard();
        return failed(RegularFile::describeErrno(code));
    }
    if (record)
        record->noteCopied(recordedName, digest->result(), trashedItem);
    // Make the rename itself durable; a failure here leaves a complete file in place, so it is ignored.
    if (DeferredSync::defer(directory))
        return {};
    if (const int directoryDescriptor = ::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
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
    const std::optional<QByteArray> encoded = FileNameEncoding::encode(path);
    if (!encoded)
        return fail(trashFailure(FileNameEncoding::displayed(path), unrepresentable(path)));
    // A trailing slash would name what a link leads to rather than the link.
    QByteArray item = *encoded;
    while (item.size() > 1 && item.endsWith('/'))
        item.chop(1);
    if (auto trashed = Trash::moveItem(item); !trashed)
        return fail(trashFailure(FileNameEncoding::displayed(path), trashed.error().text));
    return {};
}

} // namespace corvane
