// SPDX-License-Identifier: MIT
#include "Corvane/module/CorvaneWireframe.h"

#include "Corvane/module/ThemeUpdatesAssembly.h"
#include "Corvane/presentation/ThemeEntryEventHandler.h"
#include "Corvane/presentation/ThemeEntryPresenter.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/WindowAlerts.h"
#include "Corvane/ui/ThemeListViewController.h"

#include <QPointer>
#include <QWidget>

namespace corvane {
namespace {

[[noreturn]] void brokenWindowForm()
{
    qFatal("Cannot load window from Corvane storyboard");
}

} // namespace

std::shared_ptr<CorvaneWindowController> CorvaneWireframe::loadWindowController(QWidget* parent,
                                                                               QSettings* frameSettings)
{
    auto windowController = CorvaneWindowController::fromForm(parent, frameSettings);
    if (!windowController || !windowController->window() || !windowController->listViewController())
        brokenWindowForm();
    return windowController;
}

std::unique_ptr<CorvaneWireframe> CorvaneWireframe::create(const Configuration& configuration, QWidget* parent,
                                                           QSettings* frameSettings)
{
    auto windowController = loadWindowController(parent, frameSettings);

    auto alerts = std::make_shared<WindowAlerts>();
    alerts->setWindow(windowController->window());
    auto [presenter, eventHandler] = ThemeUpdatesAssembly::create(configuration, windowController, std::move(alerts));

    ThemeListViewController* list = windowController->listViewController();
    if (!list)
        brokenWindowForm();
    list->setDelegate(eventHandler);

    return std::make_unique<CorvaneWireframe>(std::move(presenter), std::move(eventHandler), std::move(windowController));
}

CorvaneWireframe::CorvaneWireframe(std::shared_ptr<ThemeEntryPresenter> presenter,
                                   std::shared_ptr<ThemeEntryEventHandler> eventHandler,
                                   std::shared_ptr<CorvaneWindowController> windowController)
    : m_presenter(std::move(presenter))
    , m_eventHandler(std::move(eventHandler))
    , m_windowController(std::move(windowController))
{
    // The host hears of installs and of the window closing through the updater's signals.
    if (m_eventHandler) {
        m_eventHandler->themesInstalled = [updater = QPointer<CorvaneWireframe>(this)](const QStringList& files) {
            if (updater)
                emit updater->themesInstalled(files);
        };
        m_eventHandler->installUndone = [updater = QPointer<CorvaneWireframe>(this)](const UndoneInstall& undone) {
            QStringList files;
            for (const UndoneFile& file : undone)
                files.append(file.path);
            if (updater)
                emit updater->installUndone(files);
        };
    }
    if (m_eventHandler && m_windowController) {
        m_eventHandler->installBatchEnded = [windowController = std::weak_ptr(m_windowController)](
                                                const InstallBatchSummary& summary) {
            if (const auto controller = windowController.lock(); controller && controller->listViewController())
                controller->listViewController()->showUndoNotice(summary);
        };
    }
    if (m_windowController)
        connect(m_windowController.get(), &CorvaneWindowController::windowClosed, this, &UpdatesThemes::closed);
}

CorvaneWireframe::~CorvaneWireframe() = default;

void CorvaneWireframe::show()
{
    m_windowController->showWindow();
    m_presenter->refresh();
}

void CorvaneWireframe::close()
{
    m_windowController->close();
}

bool CorvaneWireframe::isVisible() const
{
    const QWidget* window = m_windowController->window();
    return window && window->isVisible();
}

void CorvaneWireframe::setPreviewProvider(std::shared_ptr<ProvidesThemePreviews> provider)
{
    if (ThemeListViewController* list = m_windowController->listViewController())
        list->setPreviewProvider(std::move(provider));
}

} // namespace corvane
