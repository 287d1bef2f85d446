// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include <time.h>

namespace corvane {

// What the index recorded of a tracked file when it last looked at it. The index keeps sizes and
// inodes in 32 bits, so only those bits are compared.
struct RecordedFileStatus {
    uint32_t mode = 0;
    uint32_t size = 0;
    uint32_t inode = 0;
    int32_t mtimeSeconds = 0;
    uint32_t mtimeNanoseconds = 0;
    int32_t ctimeSeconds = 0;
    uint32_t ctimeNanoseconds = 0;
};

enum class TrackedFileState {
    same,
    changed,
    racy, // changed in the same tick as the index was written: same status, possibly other bytes
};

// One tracked file, by its path relative to the open working tree, against what the index recorded.
TrackedFileState compareTrackedFile(int workdir, const char* path, const RecordedFileStatus& recorded,
                                    const struct timespec& indexWritten);

} // namespace corvane
