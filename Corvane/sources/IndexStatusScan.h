// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/TrackedFileStatus.h"

#include <QByteArray>

#include <atomic>
#include <latch>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include <sys/stat.h>

namespace corvane {

// Compares a clone's tracked files with its index while the synchronisation is still busy with
// libgit2's start-up and the fetch: reads the index file itself on a thread of its own and looks at
// every file it lists. The caller uses the outcome only if libgit2 then reads the very same index file
// (same inode, size and times); anything this reader does not know (another index version, a cut
// short file) gives no outcome, and the caller compares the usual way.
class IndexStatusScan {
public:
    struct Entry {
        RecordedFileStatus recorded;
        const char* path; // relative to the working tree
        const unsigned char* id; // the 20 bytes of the content's id
        uint16_t stage;
    };
    struct Outcome {
        struct stat index {}; // the index file as it was read
        std::vector<Entry> entries; // in the index's order
        std::vector<std::size_t> changed; // positions in entries
        std::vector<std::size_t> racy;
    };

    // The working tree's directory, without a trailing slash; its index is ".git/index" below it.
    explicit IndexStatusScan(QByteArray workdir);
    IndexStatusScan(const IndexStatusScan&) = delete;
    IndexStatusScan& operator=(const IndexStatusScan&) = delete;
    ~IndexStatusScan(); // stops at the next batch of files

    const QByteArray& workdir() const { return m_workdir; }
    // Compares what is left on the calling thread as well, and waits for the rest; nothing if the
    // index could not be read. Valid as long as the scan.
    const Outcome* finish();

private:
    struct Findings {
        std::vector<std::size_t> changed;
        std::vector<std::size_t> racy;
    };

    void run();
    bool readIndex();
    void compareBatches(Findings& findings);

    QByteArray m_workdir;
    int m_workdirDescriptor = -1;
    QByteArray m_bytes;
    Outcome m_outcome;
    bool m_finished = false;
    bool m_readable = false;
    std::latch m_read{1};
    std::atomic<std::size_t> m_nextBatch{0};
    std::atomic<bool> m_stopped{false};
    std::mutex m_findingsMutex;
    Findings m_findings;
    std::thread m_thread;
};

} // namespace corvane
