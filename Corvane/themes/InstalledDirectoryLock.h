// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <ctime>

namespace corvane {

// Excludes the installs into one installed-themes directory from each other and from the removal
// of their leftovers, across threads and processes: an advisory lock (flock) on the directory itself.
// The system drops it when its holder dies, so a killed install never blocks the next one, and it
// needs no file of its own. While one is held, every temporary file of an install that is older
// than the lock belongs to an install that is no longer running.
class InstalledDirectoryLock {
public:
    enum class Wait { untilFree, never };

    // Holds nothing when the directory cannot be opened or locked (or, with Wait::never, is locked).
    InstalledDirectoryLock(const QByteArray& directory, Wait wait);
    ~InstalledDirectoryLock();

    InstalledDirectoryLock(const InstalledDirectoryLock&) = delete;
    InstalledDirectoryLock& operator=(const InstalledDirectoryLock&) = delete;

    bool isHeld() const { return m_held; }
    // When the lock was taken, on the clock file times are measured with.
    const timespec& acquiredAt() const { return m_acquiredAt; }

private:
    int m_descriptor = -1;
    bool m_held = false;
    timespec m_acquiredAt{};
};

} // namespace corvane
