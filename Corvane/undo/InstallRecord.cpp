// SPDX-License-Identifier: MIT
#include "Corvane/undo/InstallRecord.h"

#include "Corvane/themes/DeferredSync.h"
#include "Corvane/themes/Descriptor.h"
#include "Corvane/themes/FileNameEncoding.h"
#include "Corvane/undo/InstallRecordFile.h"

#include <QDateTime>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

thread_local std::vector<InstallRecord*> activeRecords;

std::optional<std::pair<dev_t, ino_t>> identityOf(const QByteArray& directory)
{
    struct stat status;
    if (directory.isEmpty() || ::stat(directory.constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return std::pair{status.st_dev, status.st_ino};
}

// Sorts by time of creation: nanoseconds since the epoch, zero-padded, then the process.
QByteArray newRecordName()
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const qint64 nanoseconds = qint64(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
    return QByteArray::number(nanoseconds).rightJustified(20, '0') + '-' + QByteArray::number(::getpid())
        + InstallRecordFile::suffix;
}

void removeRecordsBut(const QByteArray& folder, const QByteArray& kept)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(folder.constData()), ::closedir);
    if (!listing)
        return;
    while (const dirent* entry = ::readdir(listing.get())) {
        const QByteArray name(entry->d_name);
        if (name.endsWith(InstallRecordFile::suffix) && name != kept)
            ::unlinkat(::dirfd(listing.get()), entry->d_name, 0);
    }
}

} // namespace

InstallRecord::InstallRecord(const QUrl& installedDirectory)
    : m_directory(FileNameEncoding::encodeOrEmpty(installedDirectory.toLocalFile()))
{
    activeRecords.push_back(this);
}

InstallRecord::~InstallRecord()
{
    std::erase(activeRecords, this);
    if (m_descriptor < 0)
        return;
    const QByteArray folder = InstallRecordFile::folderOf(m_directory);
    if (!m_changed) // the previous batch stays the one to undo
        ::unlink((folder + '/' + m_name).constData());
    else if (!DeferredSync::defer(folder))
        ::fsync(m_descriptor);
    ::close(m_descriptor);
}

InstallRecord* InstallRecord::activeFor(const QByteArray& directory)
{
    if (activeRecords.empty())
        return nullptr;
    const auto identity = identityOf(directory);
    if (!identity)
        return nullptr;
    // The newest first: a batch inside another one's lifetime records its own copies.
    for (auto record = activeRecords.rbegin(); record != activeRecords.rend(); ++record) {
        // The directory may only come into being with the batch (the first comparison creates it).
        if (!(*record)->m_identity)
            (*record)->m_identity = identityOf((*record)->m_directory);
        if ((*record)->m_identity == identity)
            return *record;
    }
    return nullptr;
}

void InstallRecord::noteReplacing(const QByteArray& name)
{
    append("replacing " + InstallRecordFile::field(name));
}

void InstallRecord::noteCopied(const QByteArray& name, const QByteArray& digest, const QByteArray& trashedItem)
{
    const bool written = append("copied " + InstallRecordFile::field(name) + ' '
                                + InstallRecordFile::field(digest.toHex()) + ' ' + InstallRecordFile::field(trashedItem));
    if (written && !m_changed && !(digest.isEmpty() && trashedItem.isEmpty())) {
        m_changed = true;
        removeRecordsBut(InstallRecordFile::folderOf(m_directory), m_name);
    }
}

bool InstallRecord::append(const QByteArray& line)
{
    if (m_broken)
        return false;
    const QByteArray folder = InstallRecordFile::folderOf(m_directory);
    if (m_descriptor < 0) {
        if (::mkdir(folder.constData(), 0700) != 0 && errno != EEXIST) {
            m_broken = true;
            return false;
        }
        m_name = newRecordName();
        m_descriptor = ::open((folder + '/' + m_name).constData(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, 0600);
        if (m_descriptor < 0) {
            m_broken = true;
            return false;
        }
        if (!append(InstallRecordFile::header))
            return false;
    }
    // One write per line: a kill leaves whole lines, and appends of other batches never split one.
    const QByteArray bytes = line + '\n';
    ssize_t written;
    do {
        written = ::write(m_descriptor, bytes.constData(), std::size_t(bytes.size()));
    } while (written < 0 && errno == EINTR);
    if (written == bytes.size()) {
        if (!DeferredSync::defer(folder))
            ::fdatasync(m_descriptor);
        return true;
    }
    // A record with a gap would undo the wrong thing: without a whole one there is nothing to undo.
    m_broken = true;
    ::ftruncate(m_descriptor, 0);
    return false;
}

} // namespace corvane
