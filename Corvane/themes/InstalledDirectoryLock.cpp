// SPDX-License-Identifier: MIT
#include "Corvane/themes/InstalledDirectoryLock.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace corvane {

InstalledDirectoryLock::InstalledDirectoryLock(const QByteArray& directory, Wait wait)
{
    m_descriptor = ::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (m_descriptor < 0)
        return;
    int result;
    do {
        result = ::flock(m_descriptor, LOCK_EX | (wait == Wait::never ? LOCK_NB : 0));
    } while (result != 0 && errno == EINTR);
    m_held = result == 0;
    ::clock_gettime(CLOCK_REALTIME, &m_acquiredAt);
}

InstalledDirectoryLock::~InstalledDirectoryLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor); // releases the lock
}

} // namespace corvane
