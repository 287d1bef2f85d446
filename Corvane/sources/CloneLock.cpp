// SPDX-License-Identifier: MIT
#include "Corvane/sources/CloneLock.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QLockFile>
#include <QThread>

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds lockStaleTime = std::chrono::hours(1);

// The clones this process is synchronising, each with the token of its holder and when it took it.
// Unlike a std::mutex, a holder may let go from another thread than the one that locked.
struct Holder {
    quint64 token;
    Clock::time_point since;
};

struct InProcessLocks {
    std::mutex mutex;
    std::condition_variable released;
    QHash<QString, Holder> holders;
    quint64 nextToken = 1;
};

InProcessLocks& inProcessLocks()
{
    static InProcessLocks* locks = new InProcessLocks; // outlives every thread that may still hold one
    return *locks;
}

quint64 acquireInProcess(const QString& key)
{
    InProcessLocks& locks = inProcessLocks();
    std::unique_lock guard(locks.mutex);
    while (true) {
        auto holder = locks.holders.constFind(key);
        if (holder == locks.holders.cend() || Clock::now() - holder->since > lockStaleTime)
            break;
        locks.released.wait_until(guard, holder->since + lockStaleTime + std::chrono::milliseconds(1));
    }
    const quint64 token = locks.nextToken++;
    locks.holders.insert(key, Holder{token, Clock::now()});
    return token;
}

void releaseInProcess(const QString& key, quint64 token)
{
    InProcessLocks& locks = inProcessLocks();
    {
        std::lock_guard guard(locks.mutex);
        auto holder = locks.holders.find(key);
        // A holder that was presumed stuck and taken over no longer owns the entry.
        if (holder != locks.holders.end() && holder->token == token)
            locks.holders.erase(holder);
    }
    locks.released.notify_all();
}

} // namespace

QString CloneLock::canonicalPath(const QUrl& clone)
{
    const QFileInfo info(QDir::cleanPath(clone.toLocalFile()));
    if (const QString canonical = info.canonicalFilePath(); !canonical.isEmpty())
        return canonical;
    // Not there yet: resolve what exists of the path, keep the rest as written.
    QString existing = info.absoluteFilePath();
    QStringList missing;
    while (!QFileInfo::exists(existing)) {
        const QFileInfo part(existing);
        if (part.path() == existing)
            break;
        missing.prepend(part.fileName());
        existing = part.path();
    }
    QString canonical = QFileInfo(existing).canonicalFilePath();
    if (canonical.isEmpty())
        canonical = existing;
    for (const QString& name : std::as_const(missing))
        canonical = QDir(canonical).filePath(name);
    return QDir::cleanPath(canonical);
}

QString CloneLock::lockFilePath(const QUrl& clone)
{
    return canonicalPath(clone) + QStringLiteral(".lock");
}

std::chrono::milliseconds CloneLock::staleTime()
{
    return lockStaleTime;
}

CloneLock::CloneLock(const QUrl& clone) : m_key(canonicalPath(clone))
{
    m_token = acquireInProcess(m_key);

    const QString lockPath = m_key + QStringLiteral(".lock");
    QDir().mkpath(QFileInfo(lockPath).path());
    auto lockFile = std::make_unique<QLockFile>(lockPath);
    lockFile->setStaleLockTime(int(lockStaleTime.count()));
    // Waits while another process holds it; a dead holder's file, or one older than the stale time,
    // is removed by QLockFile and taken. Only a lock file that cannot be made at all ends the wait.
    // Polled in short steps rather than QLockFile's doubling sleeps: a synchronisation takes a fraction
    // of a second, and the next one should start soon after it.
    int pause = 5;
    while (!lockFile->tryLock(0)) {
        if (lockFile->error() != QLockFile::LockFailedError)
            return;
        QThread::msleep(pause);
        pause = std::min(pause * 2, 50);
    }
    m_lockFile = std::move(lockFile);
}

CloneLock::~CloneLock()
{
    if (m_lockFile)
        m_lockFile->unlock();
    releaseInProcess(m_key, m_token);
}

bool CloneLock::holdsLockFile() const
{
    return m_lockFile != nullptr;
}

} // namespace corvane
