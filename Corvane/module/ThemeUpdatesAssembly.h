// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/module/Configuration.h"

#include <memory>

namespace corvane {

class AsksUser;
class ShowsThemeUpdates;
class ThemeEntryEventHandler;
class ThemeEntryPresenter;

// The core of an updater, assembled for one configuration: the comparison of the clone with the
// installed themes, the presenter that shows it in a view, and the event handler for the view's
// actions. The window's assembly puts its widgets on top; the core knows them only as the view and
// the user it asks.
struct ThemeUpdatesAssembly {
    std::shared_ptr<ThemeEntryPresenter> presenter;
    std::shared_ptr<ThemeEntryEventHandler> eventHandler;

    CORVANE_EXPORT static ThemeUpdatesAssembly create(const Configuration& configuration,
                                                      std::shared_ptr<ShowsThemeUpdates> view,
                                                      std::shared_ptr<AsksUser> user);
};

} // namespace corvane
