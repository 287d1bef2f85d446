// SPDX-License-Identifier: MIT
#pragma once

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
// A holder that died never blocks: its lock file is taken over at once. A holder that is alive but has
// held the lock longer than staleTime() (far longer than any synchronisation that makes progress) is
// presumed stuck and taken over too, so no check waits forever.
class CloneLock {
public:
    // Blocks until the clone is this caller's. Never fails: if no lock file can be made beside the
    // clone (its parent cannot be created or written), only the in-process lock is held and git reports
    // the real problem when it touches the clone.
    explicit CloneLock(const QUrl& clone);
    ~CloneLock();

    CloneLock(const CloneLock&) = delete;
    CloneLock& operator=(const CloneLock&) = delete;

    // The clone's path with links resolved as far as it exists: the key both locks use.
    static QString canonicalPath(const QUrl& clone);
    // Where the lock file of a clone lies.
    static QString lockFilePath(const QUrl& clone);

    static std::chrono::milliseconds staleTime();
    bool holdsLockFile() const;

private:
    QString m_key;
    quint64 m_token = 0;
    std::unique_ptr<QLockFile> m_lockFile;
};

} // namespace corvane
