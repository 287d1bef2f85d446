// SPDX-License-Identifier: MIT
#include "Corvane/themes/InstallLeftovers.h"

#include "Corvane/themes/FileNameEncoding.h"
#include "Corvane/themes/InstalledDirectoryLock.h"
#include "Corvane/themes/Trash.h"

#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

void InstallLeftovers::removeFrom(const QUrl& directory)
{
    if (!directory.isLocalFile())
        return;
    const QByteArray path = FileNameEncoding::encodeOrEmpty(directory.toLocalFile());
    const InstalledDirectoryLock lock(path, InstalledDirectoryLock::Wait::never);
    if (!lock.isHeld())
        return;
    const timespec& before = lock.acquiredAt();

    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(path.constData()), ::closedir);
    if (!listing)
        return;
    while (const dirent* entry = ::readdir(listing.get())) {
        if (!QByteArrayView(entry->d_name).startsWith(temporaryPrefix))
            continue;
        struct stat status;
        if (::fstatat(::dirfd(listing.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0
            || !S_ISREG(status.st_mode))
            continue;
        if (status.st_mtim.tv_sec < before.tv_sec
            || (status.st_mtim.tv_sec == before.tv_sec && status.st_mtim.tv_nsec <= before.tv_nsec))
            ::unlinkat(::dirfd(listing.get()), entry->d_name, 0);
    }
    Trash::removeOrphanInfoFiles(path, before);
}

} // namespace corvane
