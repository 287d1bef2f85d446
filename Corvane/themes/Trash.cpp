// SPDX-License-Identifier: MIT
#include "Corvane/themes/Trash.h"

#include "Corvane/module/Localized.h"
#include "Corvane/themes/DeferredSync.h"
#include "Corvane/themes/Descriptor.h"
#include "Corvane/themes/FileNameEncoding.h"
#include "Corvane/themes/RegularFile.h"

#include <QDateTime>
#include <QUrl>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <optional>

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

std::unexpected<TextError> fail(QString text)
{
    return std::unexpected(TextError{std::move(text)});
}

QString shown(const QByteArray& path)
{
    return FileNameEncoding::displayed(FileNameEncoding::decode(path));
}

QString refused()
{
    //% "The Trash refused it."
    return localizedString(QT_TRID_NOOP("corvane.file-manager.trash-refused"), "The Trash refused it.");
}

QByteArray parentOf(const QByteArray& path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash <= 0 ? QByteArray("/") : path.left(slash);
}

QByteArray nameOf(const QByteArray& path)
{
    return path.mid(path.lastIndexOf('/') + 1);
}

QByteArray joined(const QByteArray& directory, const QByteArray& name)
{
    return directory.endsWith('/') ? directory + name : directory + '/' + name;
}

// The user's data home, as the base-directory rules define it: $XDG_DATA_HOME when it is an absolute
// path, else ~/.local/share.
QByteArray dataHome()
{
    const QByteArray configured = qgetenv("XDG_DATA_HOME");
    if (configured.startsWith('/'))
        return configured;
    QByteArray home = qgetenv("HOME");
    if (!home.startsWith('/')) {
        if (const passwd* user = ::getpwuid(::getuid()); user && user->pw_dir)
            home = user->pw_dir;
    }
    return joined(home.isEmpty() ? QByteArray("/") : home, ".local/share");
}

// The device of the nearest part of `path` that exists.
std::optional<dev_t> deviceOf(QByteArray path)
{
    struct stat status;
    while (::stat(path.constData(), &status) != 0) {
        if (path == "/")
            return std::nullopt;
        path = parentOf(path);
    }
    return status.st_dev;
}

// Creates the missing directories of `path`, each with `mode`; an existing one is left as it is.
Result<void, TextError> makeDirectories(const QByteArray& path, mode_t mode)
{
    struct stat status;
    if (::stat(path.constData(), &status) == 0) {
        if (S_ISDIR(status.st_mode))
            return {};
        //% "A file, not a directory, stands at '%1'."
        return fail(fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.file-manager.file-in-the-way"),
                                                     "A file, not a directory, stands at '%1'."),
                                     {shown(path)}));
    }
    if ((errno != ENOENT && errno != ENOTDIR) || path == "/")
        return fail(RegularFile::describeErrno(errno));
    if (auto parent = makeDirectories(parentOf(path), mode); !parent)
        return parent;
    if (::mkdir(path.constData(), mode) != 0 && errno != EEXIST) {
        //% "Could not create the directory '%1': %2"
        return fail(fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.file-manager.create-directory-failed"),
                                                     "Could not create the directory '%1': %2"),
                                     {shown(path), RegularFile::describeErrno(errno)}));
    }
    return {};
}

// A Trash directory: its "files" and "info" folders, and the mount top that the paths of its info
// files are relative to (empty for the user's own Trash, whose info files hold absolute paths).
struct TrashLocation {
    QByteArray root;
    QByteArray top;

    QByteArray files() const { return root + "/files"; }
    QByteArray info() const { return root + "/info"; }
};

// The top of the mount that holds `realDirectory` (a path with links resolved): the last ancestor on
// the same device.
QByteArray mountTop(const QByteArray& realDirectory, dev_t device)
{
    QByteArray top = realDirectory;
    while (top != "/") {
        const QByteArray parent = parentOf(top);
        struct stat status;
        if (::stat(parent.constData(), &status) != 0 || status.st_dev != device)
            break;
        top = parent;
    }
    return top;
}

// Whether `path` is a real directory (not a link) of this user, made with mode 0700 when missing
// and `create` is set.
bool isOwnDirectory(const QByteArray& path, bool create)
{
    if (create && ::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return false;
    struct stat status;
    return ::lstat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::getuid();
}

// The Trash of the mount top: "<top>/.Trash/<uid>" when "<top>/.Trash" is a real, sticky directory
// (an administrator made it for all users), else "<top>/.Trash-<uid>".
std::optional<QByteArray> topTrash(const QByteArray& top, bool create)
{
    const QByteArray uid = QByteArray::number(::getuid());
    const QByteArray shared = joined(top, ".Trash");
    struct stat status;
    if (::lstat(shared.constData(), &status) == 0 && S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX)) {
        const QByteArray own = shared + '/' + uid;
        if (isOwnDirectory(own, create))
            return own;
    }
    const QByteArray own = joined(top, ".Trash-" + uid);
    if (isOwnDirectory(own, create))
        return own;
    return std::nullopt;
}

// The Trash an item of `realDirectory` goes to, created as far as `create` allows.
Result<TrashLocation, TextError> trashFor(const QByteArray& realDirectory, dev_t device, bool create)
{
    const QByteArray home = dataHome();
    if (deviceOf(home + "/Trash") == device) {
        if (create) {
            // The base-directory rules let the data home be made, mode 0700; the Trash rules let its
            // Trash be made without asking.
            if (auto made = makeDirectories(home + "/Trash", 0700); !made)
                return std::unexpected(std::move(made.error()));
        }
        return TrashLocation{home + "/Trash", QByteArray()};
    }
    const QByteArray top = mountTop(realDirectory, device);
    if (auto root = topTrash(top, create))
        return TrashLocation{*root, top};
    //% "Its file system has no Trash that can be used here ('%1'), and the user's Trash is on another one."
    return fail(fillPlaceholders(
        localizedString(QT_TRID_NOOP("corvane.file-manager.no-trash-on-file-system"),
                        "Its file system has no Trash that can be used here ('%1'), and the user's Trash is on another one."),
        {shown(joined(top, ".Trash-" + QByteArray::number(::getuid())))}));
}

// Whether the "files" and "info" folders are directories, made when missing.
bool prepareFolders(const TrashLocation& trash)
{
    for (const QByteArray& folder : {trash.files(), trash.info()}) {
        if (::mkdir(folder.constData(), 0700) != 0 && errno != EEXIST)
            return false;
        struct stat status;
        if (::stat(folder.constData(), &status) != 0 || !S_ISDIR(status.st_mode))
            return false;
    }
    return true;
}

// The n-th name tried for an item: the name itself, then "stem (n).rest".
QByteArray candidateName(const QByteArray& name, int attempt)
{
    if (attempt == 1)
        return name;
    const qsizetype dot = name.indexOf('.', 1);
    const QByteArray number = " (" + QByteArray::number(attempt) + ')';
    return dot < 0 ? name + number : name.left(dot) + number + name.mid(dot);
}

QByteArray infoContent(const QByteArray& originalPath)
{
    return "[Trash Info]\nPath=" + originalPath.toPercentEncoding("/") + "\nDeletionDate="
        + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")).toLatin1() + '\n';
}

int writeAll(int descriptor, const QByteArray& bytes)
{
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t step = ::write(descriptor, bytes.constData() + written, static_cast<std::size_t>(bytes.size() - written));
        if (step < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        written += step;
    }
    return 0;
}

// Makes the info file with O_EXCL and writes it; 0, EEXIST when the name is taken, or the error.
int writeInfoExclusively(const QByteArray& info, const QByteArray& content)
{
    Descriptor descriptor(::open(info.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (descriptor.get() < 0)
        return errno;
    int code = writeAll(descriptor.get(), content);
    if (code == 0 && !DeferredSync::defer(parentOf(info)) && ::fsync(descriptor.get()) != 0)
        code = errno;
    if (const int closing = descriptor.close(); code == 0)
        code = closing;
    if (code != 0)
        ::unlink(info.constData());
    return code;
}

// The directory with links resolved; empty when it cannot be resolved.
QByteArray realDirectory(const QByteArray& directory)
{
    const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(directory.constData(), nullptr), std::free);
    return resolved ? QByteArray(resolved.get()) : QByteArray();
}

} // namespace

Result<QByteArray, TextError> Trash::moveItem(const QByteArray& path)
{
    struct stat item;
    if (path.isEmpty() || ::lstat(path.constData(), &item) != 0)
        return fail(RegularFile::describeErrno(path.isEmpty() ? ENOENT : errno));
    const QByteArray directory = realDirectory(parentOf(path));
    if (directory.isEmpty())
        return fail(RegularFile::describeErrno(errno));
    const QByteArray name = nameOf(path);
    const QByteArray original = joined(directory, name);

    auto trash = trashFor(directory, item.st_dev, true);
    if (!trash)
        return std::unexpected(std::move(trash.error()));
    if (!prepareFolders(*trash))
        return fail(refused());
    // The top-directory Trash records paths relative to its mount.
    const QByteArray recorded = trash->top.isEmpty() ? original
        : trash->top == "/"                          ? original.mid(1)
                                                     : original.mid(trash->top.size() + 1);

    // The info file appears whole or not at all: written to an unnamed file of the info folder and
    // then linked in under its name, which fails when the name is taken. A kill before the link
    // leaves nothing. Where the file system has no unnamed files it is made with O_EXCL and then
    // written, and a kill in between can leave it empty.
    const QByteArray content = infoContent(recorded);
    Descriptor unnamed(::open(trash->info().constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
    if (unnamed.get() >= 0
        && (writeAll(unnamed.get(), content) != 0 || (!DeferredSync::defer(trash->info()) && ::fsync(unnamed.get()) != 0)))
        unnamed.close();
    const QByteArray unnamedPath = "/proc/self/fd/" + QByteArray::number(unnamed.get());

    for (int attempt = 1;; ++attempt) {
        const QByteArray trashedName = candidateName(name, attempt);
        const QByteArray info = trash->info() + '/' + trashedName + ".trashinfo";
        const QByteArray trashed = trash->files() + '/' + trashedName;
        int code = 0;
        if (unnamed.get() >= 0) {
            if (::linkat(AT_FDCWD, unnamedPath.constData(), AT_FDCWD, info.constData(), AT_SYMLINK_FOLLOW) != 0)
                code = errno;
            if (code != 0 && code != EEXIST) { // no /proc, or links refused: the other way
                unnamed.close();
                code = 0;
            }
        }
        if (unnamed.get() < 0)
            code = writeInfoExclusively(info, content);
        if (code == EEXIST && attempt < 10000)
            continue;
        if (code != 0)
            return fail(refused() + u' ' + RegularFile::describeErrno(code));
        struct stat taken;
        if (::lstat(trashed.constData(), &taken) == 0) { // an item whose info file is gone: not ours to replace
            ::unlink(info.constData());
            continue;
        }
        if (::rename(path.constData(), trashed.constData()) != 0) {
            code = errno;
            ::unlink(info.constData());
            if (code == EXDEV) {
                //% "It is on another file system than the Trash."
                return fail(localizedString(QT_TRID_NOOP("corvane.file-manager.trash-other-file-system"),
                                            "It is on another file system than the Trash."));
            }
            return fail(RegularFile::describeErrno(code));
        }
        return trashed;
    }
}

QByteArray Trash::infoFileOf(const QByteArray& trashedItem)
{
    const QByteArray root = parentOf(parentOf(trashedItem));
    return root + "/info/" + nameOf(trashedItem) + ".trashinfo";
}

void Trash::removeOrphanInfoFiles(const QByteArray& directory, const timespec& before)
{
    const QByteArray real = realDirectory(directory);
    struct stat status;
    if (real.isEmpty() || ::stat(real.constData(), &status) != 0)
        return;
    const auto trash = trashFor(real, status.st_dev, false);
    if (!trash)
        return;
    const QByteArray infoFolder = trash->info();
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(infoFolder.constData()), ::closedir);
    if (!listing)
        return;
    const QByteArray expectedParent = trash->top.isEmpty() ? real
        : trash->top == "/"                                ? real.mid(1)
                                                           : real.mid(trash->top.size() + 1);
    while (const dirent* entry = ::readdir(listing.get())) {
        const QByteArray infoName(entry->d_name);
        if (!infoName.endsWith(".trashinfo"))
            continue;
        const QByteArray trashed = trash->files() + '/' + infoName.chopped(10);
        struct stat item;
        if (::lstat(trashed.constData(), &item) == 0 || errno != ENOENT)
            continue;
        const QByteArray info = infoFolder + '/' + infoName;
        struct stat infoStatus;
        if (::lstat(info.constData(), &infoStatus) != 0 || !S_ISREG(infoStatus.st_mode)
            || infoStatus.st_mtim.tv_sec > before.tv_sec
            || (infoStatus.st_mtim.tv_sec == before.tv_sec && infoStatus.st_mtim.tv_nsec > before.tv_nsec))
            continue;
        auto file = RegularFile::openAt(AT_FDCWD, info.constData(), false);
        if (!file)
            continue;
        std::unique_ptr<char[]> buffer;
        std::size_t capacity = 0;
        const auto length = file->readAll(buffer, capacity, 1, 16 * 1024);
        if (!length)
            continue;
        const QByteArray content(buffer.get(), static_cast<qsizetype>(*length));
        const qsizetype start = content.indexOf("\nPath=");
        if (start < 0)
            continue;
        const qsizetype end = content.indexOf('\n', start + 6);
        const QByteArray original = QByteArray::fromPercentEncoding(content.mid(start + 6, end < 0 ? -1 : end - start - 6));
        // Only what an interrupted move out of this very directory left: other programs' entries stay.
        if (parentOf(original) == expectedParent || (expectedParent.isEmpty() && !original.contains('/')))
            ::unlink(info.constData());
    }
}

} // namespace corvane
