// SPDX-License-Identifier: MIT
#include "Corvane/module/CorvaneWireframe.h"

#include "Corvane/differences/AsyncThemeDifferenceFinder.h"
#include "Corvane/differences/FindThemeDifferences.h"
#include "Corvane/presentation/ThemeEntryEventHandler.h"
#include "Corvane/presentation/ThemeEntryPresenter.h"
#include "Corvane/sources/LocalThemeFetcher.h"
#include "Corvane/sources/RemoteThemeFetcher.h"
#include "Corvane/sources/SynchronizedRepository.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/themes/ThemeDecoder.h"
#include "Corvane/themes/ThemeReader.h"
#include "Corvane/ui/CorvaneWindowController.h"
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

    // The two sides never share a reader or a decoder: each is used by one comparison thread at a time.
    const std::shared_ptr<FileManager> fileManager = FileManager::shared();
    auto remoteThemeFetcher = std::make_shared<RemoteThemeFetcher>(
        SynchronizedRepository(configuration),
        std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), fileManager));
    auto localThemeFetcher = std::make_shared<LocalThemeFetcher>(
        configuration.installedThemeDirectory(),
        std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), fileManager), fileManager);
    auto themeDifferenceFinder = std::make_shared<FindThemeDifferences>(
        configuration.installedThemeDirectory(), std::move(remoteThemeFetcher), std::move(localThemeFetcher));
    auto asyncThemeDifferenceFinder = std::make_shared<AsyncThemeDifferenceFinder>(
        std::move(themeDifferenceFinder), configuration.remoteThemeRepositoryURL());

    auto presenter = std::make_shared<ThemeEntryPresenter>(std::move(asyncThemeDifferenceFinder), windowController);
    auto eventHandler = std::make_shared<ThemeEntryEventHandler>(configuration, presenter, fileManager);

    ThemeListViewController* list = windowController->listViewController();
    if (!list)
        brokenWindowForm();
    list->setDelegate(eventHandler);
    eventHandler->setAlertWindow(windowController->window());

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

} // namespace corvane
