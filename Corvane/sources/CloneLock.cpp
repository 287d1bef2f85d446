// SPDX-License-Identifier: MIT
#include "Corvane/sources/CloneLock.h"

#include "Corvane/module/Localized.h"
#include "Corvane/sources/SpecialFileSweep.h"

#include <git2/errors.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QLockFile>
#include <QRandomGenerator>
#include <QThread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace corvane {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

std::mutex limitsMutex;
CloneLock::Limits currentLimits;

// The clones this process is synchronising, each with the token of its holder, when it took the clone
// and when its work last showed a sign of life. Unlike a std::mutex, a holder may let go from another
// thread than the one that locked.
struct Holder {
    quint64 token;
    Clock::time_point since;
    Clock::time_point lastSign;
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

thread_local CloneLock* workingLock = nullptr;

// A token, or how long the holder that kept the clone until the deadline has been running.
struct Acquired {
    quint64 token = 0;
    milliseconds busyFor{0};
};

Acquired acquireInProcess(const QString& key, Clock::time_point deadline, milliseconds silence)
{
    InProcessLocks& locks = inProcessLocks();
    std::unique_lock guard(locks.mutex);
    while (true) {
        auto holder = locks.holders.constFind(key);
        const Clock::time_point now = Clock::now();
        if (holder == locks.holders.cend() || now - holder->lastSign > silence)
            break;
        if (now >= deadline)
            return {0, std::chrono::duration_cast<milliseconds>(now - holder->since)};
        locks.released.wait_until(guard, std::min(deadline, holder->lastSign + silence + milliseconds(1)));
    }
    const quint64 token = locks.nextToken++;
    const Clock::time_point now = Clock::now();
    locks.holders.insert(key, Holder{token, now, now});
    return {token, milliseconds(0)};
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

std::optional<struct stat> statOf(const QString& path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return status;
}

quint64 identityOf(const struct stat& status)
{
    return quint64(status.st_ino) ^ (quint64(status.st_dev) << 40);
}

milliseconds sinceModified(const struct stat& status)
{
    const qint64 modified = qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1'000'000;
    return milliseconds(std::max<qint64>(0, QDateTime::currentMSecsSinceEpoch() - modified));
}

// QLockFile leaves a file whose holder is alive in place, however long that holder has been silent.
// Moves exactly the file judged silent out of the way: if another waiter replaced it meanwhile, the
// fresh file goes back where it was.
void takeOver(const QString& lockPath, const struct stat& judged)
{
    const QString aside = lockPath + QStringLiteral(".silent-%1").arg(QRandomGenerator::global()->generate(), 8, 16, QChar(u'0'));
    const QByteArray from = QFile::encodeName(lockPath), to = QFile::encodeName(aside);
    if (::rename(from.constData(), to.constData()) != 0)
        return;
    const auto moved = statOf(aside);
    if (moved && identityOf(*moved) != identityOf(judged))
        (void)::link(to.constData(), from.constData()); // fails harmlessly if a new lock took the place
    ::unlink(to.constData());
}

milliseconds lockFileAge(const QString& lockPath, milliseconds waited)
{
    const QDateTime born = QFileInfo(lockPath).birthTime();
    if (!born.isValid())
        return waited;
    return std::max(waited, milliseconds(std::max<qint64>(0, born.msecsTo(QDateTime::currentDateTimeUtc()))));
}

GitError busyError(const QString& clonePath, milliseconds running)
{
    return GitError(GIT_ELOCKED, GIT_ERROR_OS, CloneLock::busyText(clonePath, running));
}

} // namespace

CloneLock::Limits CloneLock::limits()
{
    std::lock_guard guard(limitsMutex);
    return currentLimits;
}

void CloneLock::setLimits(Limits limits)
{
    std::lock_guard guard(limitsMutex);
    currentLimits = limits;
}

QString CloneLock::busyText(const QString& clonePath, milliseconds running)
{
    if (running >= std::chrono::minutes(2)) {
        const double minutes = double(std::chrono::duration_cast<std::chrono::minutes>(running).count());
        //% "Another synchronisation of the clone %1 has been running for %2 minutes."
        const QString format = localizedCountedString(
            QT_TRID_N_NOOP("corvane.clone-lock.busy-minutes"), minutes,
            "Another synchronisation of the clone %1 has been running for %2 minute.",
            "Another synchronisation of the clone %1 has been running for %2 minutes.");
        return fillPlaceholders(format, {clonePath, localizedNumber(minutes)});
    }
    const double seconds = double(running.count() / 100) / 10.0;
    //% "Another synchronisation of the clone %1 has been running for %2 seconds."
    const QString format = localizedCountedString(
        QT_TRID_N_NOOP("corvane.clone-lock.busy-seconds"), seconds,
        "Another synchronisation of the clone %1 has been running for %2 second.",
        "Another synchronisation of the clone %1 has been running for %2 seconds.");
    return fillPlaceholders(format, {clonePath, localizedNumber(seconds)});
}

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

CloneLock::CloneLock(QString key, quint64 token) : m_key(std::move(key)), m_token(token), m_lastTouch(Clock::now())
{
}

Result<std::shared_ptr<CloneLock>, GitError> CloneLock::acquire(const QUrl& clone)
{
    const Limits limits = CloneLock::limits();
    const Clock::time_point start = Clock::now();
    const Clock::time_point deadline = start + limits.wait;
    const QString key = canonicalPath(clone);
    const Acquired inProcess = acquireInProcess(key, deadline, limits.silence);
    if (inProcess.token == 0)
        return std::unexpected(busyError(key, inProcess.busyFor));
    std::shared_ptr<CloneLock> lock(new CloneLock(key, inProcess.token));

    const QString lockPath = key + QStringLiteral(".lock");
    QDir().mkpath(QFileInfo(lockPath).path());
    // QLockFile reads a lock file it finds: a pipe in its place would block that read for ever.
    SpecialFileSweep::removeIfSpecial(QFile::encodeName(lockPath));
    auto lockFile = std::make_unique<QLockFile>(lockPath);
    // A dead holder's file is removed by QLockFile and taken; a live one's only once it is silent.
    lockFile->setStaleLockTime(int(limits.silence.count()));
    // Polled in short steps rather than QLockFile's doubling sleeps: a synchronisation takes a fraction
    // of a second, and the next one should start soon after it.
    int pause = 5;
    while (!lockFile->tryLock(0)) {
        if (lockFile->error() != QLockFile::LockFailedError)
            return lock;
        const Clock::time_point now = Clock::now();
        if (now >= deadline)
            return std::unexpected(busyError(key, lockFileAge(lockPath, std::chrono::duration_cast<milliseconds>(now - start))));
        if (const auto status = statOf(lockPath); status && sinceModified(*status) > limits.silence)
            takeOver(lockPath, *status);
        QThread::msleep(pause);
        pause = std::min(pause * 2, 50);
    }
    if (const auto status = statOf(lockPath))
        lock->m_lockFileIdentity = identityOf(*status);
    lock->m_lockFile = std::move(lockFile);
    return lock;
}

CloneLock::~CloneLock()
{
    if (m_lockFile) {
        // Taken over while stuck: the file at the path is the new holder's, and QLockFile would remove
        // it by name. The old file is already gone; its handle is kept, never unlocked, for the rest
        // of the process (a takeover is rare: one small object each).
        const auto status = statOf(m_key + QStringLiteral(".lock"));
        if (!status || identityOf(*status) != m_lockFileIdentity) {
            static std::mutex parkedMutex;
            static auto* parked = new std::vector<std::unique_ptr<QLockFile>>;
            std::lock_guard guard(parkedMutex);
            parked->push_back(std::move(m_lockFile));
        } else
            m_lockFile->unlock();
    }
    releaseInProcess(m_key, m_token);
}

void CloneLock::signOfLife()
{
    const Clock::time_point now = Clock::now();
    {
        InProcessLocks& locks = inProcessLocks();
        std::lock_guard guard(locks.mutex);
        if (auto holder = locks.holders.find(m_key); holder != locks.holders.end() && holder->token == m_token)
            holder->lastSign = now;
    }
    // Other processes judge by the lock file's time; touch it at most once a second.
    if (!m_lockFile || now - m_lastTouch < std::chrono::seconds(1))
        return;
    m_lastTouch = now;
    const QString lockPath = m_key + QStringLiteral(".lock");
    if (const auto status = statOf(lockPath); status && identityOf(*status) == m_lockFileIdentity)
        ::utimensat(AT_FDCWD, QFile::encodeName(lockPath).constData(), nullptr, 0);
}

CloneLock::WorkingOnThisThread::WorkingOnThisThread(CloneLock& lock) : m_previous(workingLock)
{
    workingLock = &lock;
}

CloneLock::WorkingOnThisThread::~WorkingOnThisThread()
{
    workingLock = m_previous;
}

void CloneLock::signOfLifeOnThisThread()
{
    if (workingLock)
        workingLock->signOfLife();
}

bool CloneLock::holdsLockFile() const
{
    return m_lockFile != nullptr;
}

} // namespace corvane
