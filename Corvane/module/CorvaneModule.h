// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/corvane_widgets_export.h"
#include "Corvane/module/Configuration.h"
#include "Corvane/module/RepositoryCheckHandle.h"
#include "Corvane/module/ThemeRepositoryStatus.h"
#include "Corvane/module/UpdatesThemes.h"
#include "Corvane/undo/UndoLastInstall.h"

#include <QString>

class QObject;
class QSettings;
class QWidget;

#include <functional>
#include <memory>
#include <optional>

namespace corvane {

// The module as a host holds it: a configuration and two operations that start from it alone.
class CorvaneModule {
public:
    explicit CorvaneModule(Configuration configuration) : m_configuration(std::move(configuration)) {}

    const Configuration& configuration() const { return m_configuration; }

    // Synchronises the local clone in the background and tells whether the repository has moved on
    // from sinceCommit. Returns at once; result runs later, exactly once, on the main thread.
    // May be called from any thread; needs a running QCoreApplication.
    CORVANE_EXPORT void hasUpdates(std::optional<QString> sinceCommit,
                                   std::function<void(ThemeRepositoryStatus)> result) const;
    // The same, answered only while `context` lives (as a Qt connection to a lambda is) and until the
    // returned handle is cancelled: a callback that captures a host object never runs after it is gone.
    // Main thread only.
    CORVANE_EXPORT RepositoryCheckHandle hasUpdates(std::optional<QString> sinceCommit, const QObject* context,
                                                    std::function<void(ThemeRepositoryStatus)> result) const;

    // Builds a new, independent updater with its own window; the caller holds the only reference.
    // With a parent, the window is transient for the parent's window and opens centred over it.
    // The window's frame is kept in `frameSettings` (which must outlive the updater) under the group
    // "Corvane", or, without one, in the application's default QSettings.
    // Main thread only; needs a QApplication. Part of Corvane::Widgets.
    CORVANE_WIDGETS_EXPORT std::unique_ptr<UpdatesThemes> corvane(QWidget* parent = nullptr, QSettings* frameSettings = nullptr) const;

    // Takes back the last install batch made in the installed-themes directory (by an updater window
    // or the command-line tool): the files it wrote go to the Trash, the files it replaced come back.
    // When any file changed since, nothing changes and the error names it. An open updater window
    // shows the change after its next refresh. Main thread or any other; blocks while it moves files.
    CORVANE_EXPORT Result<UndoneInstall, TextError> undoLastInstall() const;

private:
    Configuration m_configuration;
};

} // namespace corvane
