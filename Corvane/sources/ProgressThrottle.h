// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/SynchronizationProgress.h"

#include <chrono>
#include <optional>

namespace corvane {

// Thins the stream of progress a transfer reports (libgit2 calls back for every object) to what a
// person can read: at most one report per interval, but always the first of each stage and the one
// that completes it, so what is shown last is the real end. Reports it lets pass keep their order,
// so a receiver sees every stage move forward only. For one thread at a time.
class ProgressThrottle {
public:
    static constexpr std::chrono::milliseconds defaultInterval{50};

    explicit ProgressThrottle(std::chrono::milliseconds interval = defaultInterval) : m_interval(interval) {}

    // Whether progress should be passed on now.
    bool admit(const SynchronizationProgress& progress);

    // The receiver, behind a throttle of its own.
    static ReportsSynchronizationProgress wrap(ReportsSynchronizationProgress receiver,
                                               std::chrono::milliseconds interval = defaultInterval);

private:
    using Clock = std::chrono::steady_clock;

    std::chrono::milliseconds m_interval;
    std::optional<SynchronizationProgress> m_last;
    Clock::time_point m_lastTime;
};

} // namespace corvane
