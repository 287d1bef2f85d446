// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Configuration.h"
#include "Corvane/module/UpdatesThemes.h"

#include <memory>

class QSettings;
class QWidget;

namespace corvane {

class CorvaneWindowController;
class ThemeEntryEventHandler;
class ThemeEntryPresenter;

// Builds the updater's object graph and keeps its top three objects alive. The graph has no cycle:
// the only reference back up, from the window's list to the event handler, is weak, so dropping the
// wireframe releases everything (a comparison still running lets go of it when it ends).
class CorvaneWireframe : public UpdatesThemes {
public:
    // Touches no file and no network: the first comparison starts with the first show().
    // With a parent, the window is transient for the parent's window; the frame is kept in
    // frameSettings when given (it must outlive the updater), else in the default QSettings.
    static std::unique_ptr<CorvaneWireframe> create(const Configuration& configuration, QWidget* parent = nullptr,
                                                    QSettings* frameSettings = nullptr);

    // The window controller from the module's "Corvane" form. A form without the theme list as the
    // window's content is a broken build of the module: the process stops.
    static std::shared_ptr<CorvaneWindowController> loadWindowController(QWidget* parent = nullptr,
                                                                         QSettings* frameSettings = nullptr);

    CorvaneWireframe(std::shared_ptr<ThemeEntryPresenter> presenter, std::shared_ptr<ThemeEntryEventHandler> eventHandler,
                     std::shared_ptr<CorvaneWindowController> windowController);
    ~CorvaneWireframe() override;

    // Shows the window and refreshes the list, every time.
    void show() override;
    // Closes the window; the graph stays as it is.
    void close() override;
    bool isVisible() const override;
    void setPreviewProvider(std::shared_ptr<ProvidesThemePreviews> provider) override;

    const std::shared_ptr<ThemeEntryPresenter>& presenter() const { return m_presenter; }
    const std::shared_ptr<ThemeEntryEventHandler>& eventHandler() const { return m_eventHandler; }
    const std::shared_ptr<CorvaneWindowController>& windowController() const { return m_windowController; }

private:
    std::shared_ptr<ThemeEntryPresenter> m_presenter;
    std::shared_ptr<ThemeEntryEventHandler> m_eventHandler;
    std::shared_ptr<CorvaneWindowController> m_windowController;
};

} // namespace corvane
