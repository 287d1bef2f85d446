// SPDX-License-Identifier: MIT
#include "Corvane/sources/IndexStatusScan.h"

#include "Corvane/themes/Descriptor.h"

#include <algorithm>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace corvane {
namespace {

constexpr std::size_t batchSize = 256;
constexpr std::size_t headerSize = 12;
constexpr std::size_t checksumSize = 20; // the index's trailing SHA-1
constexpr std::size_t fixedEntrySize = 62; // times, device, inode, mode, owner, size, id, flags
constexpr uint16_t extendedFlag = 0x4000;
constexpr uint16_t nameLengthMask = 0x0FFF;
// Far above any index of a theme repository; a larger file is left to libgit2.
constexpr off_t largestIndex = 256 * 1024 * 1024;

uint32_t bigEndian32(const char* at)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(at);
    return uint32_t(bytes[0]) << 24 | uint32_t(bytes[1]) << 16 | uint32_t(bytes[2]) << 8 | uint32_t(bytes[3]);
}

uint16_t bigEndian16(const char* at)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(at);
    return uint16_t(bytes[0] << 8 | bytes[1]);
}

} // namespace

IndexStatusScan::IndexStatusScan(QByteArray workdir)
    : m_workdir(std::move(workdir))
{
    m_thread = std::thread([this] { run(); });
}

IndexStatusScan::~IndexStatusScan()
{
    m_stopped = true;
    if (m_thread.joinable())
        m_thread.join();
    if (m_workdirDescriptor >= 0)
        ::close(m_workdirDescriptor);
}

void IndexStatusScan::run()
{
    m_readable = readIndex();
    m_read.count_down();
    if (!m_readable)
        return;
    Findings findings;
    compareBatches(findings);
    const std::lock_guard guard(m_findingsMutex);
    m_findings.changed.insert(m_findings.changed.end(), findings.changed.begin(), findings.changed.end());
    m_findings.racy.insert(m_findings.racy.end(), findings.racy.begin(), findings.racy.end());
}

// The index of versions 2 and 3 (which libgit2 and git write unless told otherwise): a header, then
// one record per entry, each padded with NULs to a multiple of eight bytes.
bool IndexStatusScan::readIndex()
{
    m_workdirDescriptor = ::open(m_workdir.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (m_workdirDescriptor < 0)
        return false;
    // Non-blocking and not through a link: a pipe or device in its place must not hold this thread.
    const Descriptor file(::openat(m_workdirDescriptor, ".git/index", O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
    if (file.get() < 0 || ::fstat(file.get(), &m_outcome.index) != 0 || !S_ISREG(m_outcome.index.st_mode)
        || m_outcome.index.st_size < off_t(headerSize + checksumSize) || m_outcome.index.st_size > largestIndex)
        return false;
    m_bytes.resize(qsizetype(m_outcome.index.st_size));
    std::size_t filled = 0;
    while (filled < std::size_t(m_bytes.size())) {
        const ssize_t got = ::read(file.get(), m_bytes.data() + filled, std::size_t(m_bytes.size()) - filled);
        if (got <= 0)
            return false;
        filled += std::size_t(got);
    }
    const char* data = m_bytes.constData();
    const uint32_t version = bigEndian32(data + 4);
    if (std::memcmp(data, "DIRC", 4) != 0 || (version != 2 && version != 3))
        return false;
    const std::size_t count = bigEndian32(data + 8);
    const std::size_t end = std::size_t(m_bytes.size()) - checksumSize;
    if (count > end / fixedEntrySize)
        return false;
    m_outcome.entries.reserve(count);
    std::size_t offset = headerSize;
    for (std::size_t position = 0; position < count; ++position) {
        if (end - offset < fixedEntrySize)
            return false;
        const char* record = data + offset;
        const uint16_t flags = bigEndian16(record + 60);
        std::size_t pathOffset = fixedEntrySize;
        if (flags & extendedFlag) {
            if (version < 3)
                return false;
            pathOffset += 2;
        }
        if (end - offset < pathOffset + 1)
            return false;
        const char* path = record + pathOffset;
        const std::size_t room = end - offset - pathOffset;
        const auto* terminator = static_cast<const char*>(std::memchr(path, '\0', room));
        if (!terminator)
            return false;
        const std::size_t length = std::size_t(terminator - path);
        // A name of 0xFFF bytes or more is recorded as 0xFFF; shorter ones exactly.
        const std::size_t recordedLength = flags & nameLengthMask;
        if (recordedLength < nameLengthMask ? length != recordedLength : length < nameLengthMask)
            return false;
        const std::size_t entrySize = (pathOffset + length + 8) & ~std::size_t(7);
        if (entrySize > end - offset)
            return false;
        RecordedFileStatus recorded;
        recorded.ctimeSeconds = int32_t(bigEndian32(record));
        recorded.ctimeNanoseconds = bigEndian32(record + 4);
        recorded.mtimeSeconds = int32_t(bigEndian32(record + 8));
        recorded.mtimeNanoseconds = bigEndian32(record + 12);
        recorded.inode = bigEndian32(record + 20);
        recorded.mode = bigEndian32(record + 24);
        recorded.size = bigEndian32(record + 36);
        const auto* id = reinterpret_cast<const unsigned char*>(record + 40);
        m_outcome.entries.push_back({recorded, path, id, uint16_t((flags >> 12) & 3)});
        offset += entrySize;
    }
    return true;
}

void IndexStatusScan::compareBatches(Findings& findings)
{
    const std::size_t batches = (m_outcome.entries.size() + batchSize - 1) / batchSize;
    for (std::size_t batch = m_nextBatch++; batch < batches && !m_stopped; batch = m_nextBatch++) {
        const std::size_t last = std::min(m_outcome.entries.size(), (batch + 1) * batchSize);
        for (std::size_t position = batch * batchSize; position < last; ++position) {
            const Entry& entry = m_outcome.entries[position];
            switch (compareTrackedFile(m_workdirDescriptor, entry.path, entry.recorded, m_outcome.index.st_mtim)) {
            case TrackedFileState::same:
                break;
            case TrackedFileState::changed:
                findings.changed.push_back(position);
                break;
            case TrackedFileState::racy:
                findings.racy.push_back(position);
                break;
            }
        }
    }
}

const IndexStatusScan::Outcome* IndexStatusScan::finish()
{
    if (!m_finished) {
        m_finished = true;
        m_read.wait();
        Findings findings;
        if (m_readable)
            compareBatches(findings);
        m_thread.join();
        for (const Findings* part : {&m_findings, &findings}) {
            m_outcome.changed.insert(m_outcome.changed.end(), part->changed.begin(), part->changed.end());
            m_outcome.racy.insert(m_outcome.racy.end(), part->racy.begin(), part->racy.end());
        }
    }
    return m_readable ? &m_outcome : nullptr;
}

} // namespace corvane
