// SPDX-License-Identifier: MIT
#include "Corvane/sources/TrackedFileStatus.h"

#include <git2.h>

#include <fcntl.h>
#include <sys/stat.h>

namespace corvane {
namespace {

bool sameTime(int32_t seconds, uint32_t nanoseconds, const struct timespec& actual)
{
    return seconds == int32_t(actual.tv_sec) && nanoseconds == uint32_t(actual.tv_nsec);
}

bool notBefore(int32_t seconds, uint32_t nanoseconds, const struct timespec& than)
{
    return int64_t(seconds) > int64_t(than.tv_sec)
        || (int64_t(seconds) == int64_t(than.tv_sec) && nanoseconds >= uint32_t(than.tv_nsec));
}

} // namespace

TrackedFileState compareTrackedFile(int workdir, const char* path, const RecordedFileStatus& recorded,
                                    const struct timespec& indexWritten)
{
    // Links are checked out as plain files here, and nested repositories are not ours: rather check out.
    if (recorded.mode != GIT_FILEMODE_BLOB && recorded.mode != GIT_FILEMODE_BLOB_EXECUTABLE)
        return TrackedFileState::changed;
    struct stat status {};
    if (::fstatat(workdir, path, &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode))
        return TrackedFileState::changed;
    const bool executable = (status.st_mode & S_IXUSR) != 0;
    if (executable != (recorded.mode == GIT_FILEMODE_BLOB_EXECUTABLE) || recorded.size != uint32_t(status.st_size)
        || recorded.inode != uint32_t(status.st_ino)
        || !sameTime(recorded.mtimeSeconds, recorded.mtimeNanoseconds, status.st_mtim)
        || !sameTime(recorded.ctimeSeconds, recorded.ctimeNanoseconds, status.st_ctim))
        return TrackedFileState::changed;
    return notBefore(recorded.mtimeSeconds, recorded.mtimeNanoseconds, indexWritten) ? TrackedFileState::racy
                                                                                     : TrackedFileState::same;
}

} // namespace corvane
