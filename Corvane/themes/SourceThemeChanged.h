// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace corvane {

// A copy refused because the clone's file no longer holds the theme the list showed: the repository
// moved on (or the file went) since the comparison read it. Nothing was installed; a fresh comparison
// shows what the repository holds now.
struct SourceThemeChanged {
    QString fileName;

    QString errorDescription() const;
};

} // namespace corvane
