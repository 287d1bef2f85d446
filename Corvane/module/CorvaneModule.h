// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/module/Configuration.h"
#include "Corvane/module/ThemeRepositoryStatus.h"
#include "Corvane/module/UpdatesThemes.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace corvane {

// The module as a host holds it: a configuration and two operations that start from it alone.
class CORVANE_EXPORT CorvaneModule {
public:
    explicit CorvaneModule(Configuration configuration) : m_configuration(std::move(configuration)) {}

    const Configuration& configuration() const { return m_configuration; }

    // Synchronises the local clone in the background and tells whether the repository has moved on
    // from sinceCommit. Returns at once; result runs later, exactly once, on the main thread.
    // May be called from any thread; needs a running QCoreApplication.
    void hasUpdates(std::optional<QString> sinceCommit, std::function<void(ThemeRepositoryStatus)> result) const;

    // Builds a new, independent updater with its own window; the caller holds the only reference.
    // Main thread only; needs a QApplication.
    std::unique_ptr<UpdatesThemes> corvane() const;

private:
    Configuration m_configuration;
};

} // namespace corvane
