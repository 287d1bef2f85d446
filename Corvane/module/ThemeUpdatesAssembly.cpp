// SPDX-License-Identifier: MIT
#include "Corvane/module/ThemeUpdatesAssembly.h"

#include "Corvane/differences/AsyncThemeDifferenceFinder.h"
#include "Corvane/differences/FindThemeDifferences.h"
#include "Corvane/module/Dispatch.h"
#include "Corvane/presentation/ThemeEntryEventHandler.h"
#include "Corvane/presentation/ThemeEntryPresenter.h"
#include "Corvane/sources/LocalThemeFetcher.h"
#include "Corvane/sources/ProgressThrottle.h"
#include "Corvane/sources/RemoteThemeFetcher.h"
#include "Corvane/sources/SynchronizedRepository.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/themes/ThemeDecoder.h"
#include "Corvane/themes/ThemeReader.h"

namespace corvane {

ThemeUpdatesAssembly ThemeUpdatesAssembly::create(const Configuration& configuration,
                                                  std::shared_ptr<ShowsThemeUpdates> view,
                                                  std::shared_ptr<AsksUser> user)
{
    // The two sides never share a reader or a decoder: each is used by one comparison thread at a time.
    const std::shared_ptr<FileManager> fileManager = FileManager::shared();
    // The clone reports from the comparison's thread; the presenter hears of it on the main thread, a
    // few times a second, in order. It is made below, so the report finds it through this slot.
    auto progressReceiver = std::make_shared<std::weak_ptr<ThemeEntryPresenter>>();
    SynchronizedRepository synchronizedRepository(configuration);
    synchronizedRepository.reportProgressTo(
        ProgressThrottle::wrap([progressReceiver](const SynchronizationProgress& progress) {
            dispatchMain([presenter = *progressReceiver, progress] {
                if (const auto receiver = presenter.lock())
                    receiver->showSynchronizationProgress(progress);
            });
        }));
    auto remoteThemeFetcher = std::make_shared<RemoteThemeFetcher>(
        std::move(synchronizedRepository),
        std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), fileManager));
    auto localThemeFetcher = std::make_shared<LocalThemeFetcher>(
        configuration.installedThemeDirectory(),
        std::make_shared<ThemeReader>(std::make_shared<ThemeDecoder>(), fileManager), fileManager);
    auto themeDifferenceFinder = std::make_shared<FindThemeDifferences>(
        configuration.installedThemeDirectory(), std::move(remoteThemeFetcher), std::move(localThemeFetcher));
    auto asyncThemeDifferenceFinder = std::make_shared<AsyncThemeDifferenceFinder>(
        std::move(themeDifferenceFinder), configuration.remoteThemeRepositoryURL());

    auto presenter = std::make_shared<ThemeEntryPresenter>(std::move(asyncThemeDifferenceFinder), std::move(view));
    *progressReceiver = presenter;
    auto eventHandler = std::make_shared<ThemeEntryEventHandler>(configuration, presenter, fileManager, std::move(user));
    return {std::move(presenter), std::move(eventHandler)};
}

} // namespace corvane
