// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Configuration.h"
#include "Corvane/module/ThemeRepositoryStatus.h"
#include "Corvane/sources/SynchronizationProgress.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace corvane {

// One repository check: synchronises the clone and compares its HEAD commit with the host's.
class CorvaneService {
public:
    explicit CorvaneService(Configuration configuration) : m_configuration(std::move(configuration)) {}

    // A check's time allowed, as for the window's comparison: git has no time limit of its own for a
    // server that accepts the connection and then stays silent.
    static constexpr std::chrono::milliseconds defaultTimeLimit = std::chrono::minutes(5);

    // The synchronisations of later checks report their progress there, on their own thread.
    void reportProgressTo(ReportsSynchronizationProgress progress) { m_progress = std::move(progress); }

    // Blocks for the whole synchronisation; run it off the main thread.
    ThemeRepositoryStatus repositoryStatus(const std::optional<QString>& sinceCommit) const;

    // Checks on the background pool and answers once, on the main thread, never within the call: with
    // the check's status, or with a failure saying the repository did not answer within timeLimit (a
    // late status is then dropped).
    void checkInBackground(std::optional<QString> sinceCommit, std::chrono::milliseconds timeLimit,
                           std::function<void(ThemeRepositoryStatus)> result) const;

private:
    Configuration m_configuration;
    ReportsSynchronizationProgress m_progress;
};

} // namespace corvane
