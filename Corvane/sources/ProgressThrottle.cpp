// SPDX-License-Identifier: MIT
#include "Corvane/sources/ProgressThrottle.h"

#include <memory>
#include <mutex>

namespace corvane {

bool ProgressThrottle::admit(const SynchronizationProgress& progress)
{
    if (m_last && *m_last == progress)
        return false;
    const bool milestone = !m_last || m_last->stage != progress.stage
        || (progress.isComplete() && !(m_last->isComplete() && m_last->done == progress.done));
    const Clock::time_point now = Clock::now();
    if (!milestone && now - m_lastTime < m_interval)
        return false;
    m_last = progress;
    m_lastTime = now;
    return true;
}

ReportsSynchronizationProgress ProgressThrottle::wrap(ReportsSynchronizationProgress receiver,
                                                      std::chrono::milliseconds interval)
{
    if (!receiver)
        return {};
    // Shared so that copies of the wrapper (one synchronisation after another) throttle together.
    // A synchronisation given up on (its time limit passed) may still report beside the next one.
    struct Shared {
        explicit Shared(std::chrono::milliseconds interval) : throttle(interval) {}
        std::mutex mutex;
        ProgressThrottle throttle;
    };
    auto shared = std::make_shared<Shared>(interval);
    return [shared, receiver = std::move(receiver)](const SynchronizationProgress& progress) {
        {
            const std::lock_guard guard(shared->mutex);
            if (!shared->throttle.admit(progress))
                return;
        }
        receiver(progress);
    };
}

} // namespace corvane
