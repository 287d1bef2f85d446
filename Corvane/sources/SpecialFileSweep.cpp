// SPDX-License-Identifier: MIT
#include "Corvane/sources/SpecialFileSweep.h"

#include <QFile>

#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

bool isSpecial(mode_t mode)
{
    return !S_ISREG(mode) && !S_ISDIR(mode) && !S_ISLNK(mode);
}

int removeSpecialEntry(const char* path, const struct stat* status, int type, FTW*)
{
    if (type != FTW_NS && isSpecial(status->st_mode))
        ::unlink(path); // a failure shows when git opens it, with git's own message
    return 0;
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
    const QByteArray path = QFile::encodeName(directory);
    if (removeIfSpecial(path))
        return;
    ::nftw(path.constData(), removeSpecialEntry, 16, FTW_PHYS | FTW_MOUNT);
}

} // namespace corvane
