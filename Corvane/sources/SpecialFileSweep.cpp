// SPDX-License-Identifier: MIT
#include "Corvane/sources/SpecialFileSweep.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <memory>

namespace corvane {
namespace {

bool isSpecial(mode_t mode)
{
    return !S_ISREG(mode) && !S_ISDIR(mode) && !S_ISLNK(mode);
}

// Deep enough for any repository; a deeper tree is not walked further rather than without bound.
constexpr int maximumDepth = 64;

// What a walk keeps to: everything, or the tracked paths of a working tree.
struct Walk {
    const std::function<bool(const QByteArray&)>* isTracked = nullptr;

    bool covers(const QByteArray& relativePath) const { return !isTracked || (*isTracked)(relativePath); }
};

// One pass over each directory's listing: the entries' own types answer for almost every file, so
// the sweep costs no system call per file (a clone of 10,000 themes: a few milliseconds).
void sweepDirectory(int directoryDescriptor, const QByteArray& relativePath, const Walk& walk, int depth)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(::fdopendir(directoryDescriptor), ::closedir);
    if (!directory) {
        ::close(directoryDescriptor);
        return;
    }
    while (const dirent* entry = ::readdir(directory.get())) {
        const char* name = entry->d_name;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
            continue;
        if (walk.isTracked && relativePath.isEmpty() && std::strcmp(name, ".git") == 0)
            continue;
        unsigned char type = entry->d_type;
        if (type == DT_UNKNOWN) {
            struct stat status;
            if (::fstatat(::dirfd(directory.get()), name, &status, AT_SYMLINK_NOFOLLOW) != 0)
                continue;
            type = S_ISDIR(status.st_mode) ? DT_DIR : isSpecial(status.st_mode) ? DT_FIFO : DT_REG;
        }
        if (type == DT_REG || type == DT_LNK)
            continue;
        const QByteArray path = relativePath.isEmpty() ? QByteArray(name) : relativePath + '/' + name;
        if (!walk.covers(path))
            continue;
        if (type == DT_DIR) {
            if (depth >= maximumDepth)
                continue;
            const int child = ::openat(::dirfd(directory.get()), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
            if (child >= 0)
                sweepDirectory(child, path, walk, depth + 1);
        } else {
            ::unlinkat(::dirfd(directory.get()), name, 0); // a failure shows when git opens it, in git's words
        }
    }
}

void sweep(const QString& directory, const Walk& walk)
{
    // Opening a directory never blocks; O_DIRECTORY refuses anything else, O_NOFOLLOW a link.
    const int descriptor = ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor >= 0)
        sweepDirectory(descriptor, {}, walk, 0);
}

} // namespace

bool SpecialFileSweep::removeIfSpecial(const QByteArray& path)
{
    struct stat status;
    if (::lstat(path.constData(), &status) != 0 || !isSpecial(status.st_mode))
        return false;
    return ::unlink(path.constData()) == 0;
}

void SpecialFileSweep::clearBelow(const QString& directory)
{
    if (!removeIfSpecial(QFile::encodeName(directory)))
        sweep(directory, Walk{});
}

void SpecialFileSweep::clearTracked(const QString& workTree, const std::function<bool(const QByteArray&)>& isTracked)
{
    sweep(workTree, Walk{&isTracked});
}

} // namespace corvane
