// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/sources/GitError.h"

#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>

class QLockFile;

namespace corvane {

// Serialises synchronisations of one local clone: within the process by the clone's canonical path,
// across processes by a lock file beside the clone ("<clone>.lock"; not inside it, since the clone may
// not exist yet and a reset moves it to the Trash). libgit2 locks nothing itself, and two fetches or
// checkouts of one clone at once fail on its index and reference locks.
//
// Nobody waits for ever. The holder's work gives signs of life (every transfer's progress, every file
// checked out); a holder that died, or that is alive but has shown none for longer than the silence
// limit (past every time limit of its transfers, so stuck), is taken over. A waiter that finds a
// holder still working gives up after the wait limit, saying how long that synchronisation has run.
class CloneLock {
public:
    struct Limits {
        std::chrono::milliseconds wait = std::chrono::minutes(2);
        std::chrono::milliseconds silence = std::chrono::minutes(2);
    };
    static Limits limits();
    static void setLimits(Limits limits);

    // Blocks until the clone is this caller's, or fails after the wait limit. If no lock file can be
    // made beside the clone (its parent cannot be created or written), only the in-process lock is held
    // and git reports the real problem when it touches the clone.
    static Result<std::shared_ptr<CloneLock>, GitError> acquire(const QUrl& clone);
    ~CloneLock();

    CloneLock(const CloneLock&) = delete;
    CloneLock& operator=(const CloneLock&) = delete;

    // Keeps the clone from being taken over while this holder's work goes on. Cheap; call it often.
    void signOfLife();

    // For the duration of a scope, the lock whose holder's work runs on this thread: the transfers and
    // checkouts made there give their signs of life to it without knowing of it.
    class WorkingOnThisThread {
    public:
        explicit WorkingOnThisThread(CloneLock& lock);
        ~WorkingOnThisThread();
        WorkingOnThisThread(const WorkingOnThisThread&) = delete;
        WorkingOnThisThread& operator=(const WorkingOnThisThread&) = delete;

    private:
        CloneLock* m_previous;
    };
    static void signOfLifeOnThisThread();

    // The clone's path with links resolved as far as it exists: the key both locks use.
    static QString canonicalPath(const QUrl& clone);
    // Where the lock file of a clone lies.
    static QString lockFilePath(const QUrl& clone);

    bool holdsLockFile() const;

    // "Another synchronisation of the clone <path> has been running for <n> seconds." (minutes from two on)
    static QString busyText(const QString& clonePath, std::chrono::milliseconds running);

private:
    CloneLock(QString key, quint64 token);

    QString m_key;
    quint64 m_token = 0;
    std::unique_ptr<QLockFile> m_lockFile;
    quint64 m_lockFileIdentity = 0;
    std::chrono::steady_clock::time_point m_lastTouch;
};

} // namespace corvane
