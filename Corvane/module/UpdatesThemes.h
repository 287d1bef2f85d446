// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

namespace corvane {

// The updater window as the host sees it. Main thread only.
class CORVANE_EXPORT UpdatesThemes {
public:
    virtual ~UpdatesThemes();

    // Shows the window and starts loading its list; every call refreshes the list.
    virtual void show() = 0;
    // Closes the window; the updater stays as it is, and a later show() brings the same window back.
    virtual void close() = 0;
    // Whether the window exists and is on screen.
    virtual bool isVisible() const = 0;
};

} // namespace corvane
