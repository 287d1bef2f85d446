// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/ThemeEntry.h"

namespace corvane {

// Where the presenter shows the state of the list: the window, or a test's recording view.
class ShowsThemeUpdates {
public:
    virtual ~ShowsThemeUpdates() = default;
    virtual void showThemeEntries(const ThemeListState& state) = 0;
};

} // namespace corvane
