#pragma once

#include "Corvane/module/Configuration.h"
#include "Corvane/module/ThemeRepositoryStatus.h"

#include <QString>

#include <optional>

namespace corvane {

// One repository check: synchronises the clone and compares its HEAD commit with the host's.
class CorvaneService {
public:
    explicit CorvaneService(Configuration configuration) : m_configuration(std::move(configuration)) {}

    // Blocks for the whole synchronisation; run it off the main thread.
    ThemeRepositoryStatus repositoryStatus(const std::optional<QString>& sinceCommit) const;

private:
    Configuration m_configuration;
};

} // namespace corvane
