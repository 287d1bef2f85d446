// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QImage>
#include <QSize>
#include <QString>

namespace corvane {

// A host's pictures of its themes, for the updater's rows. When the updater has one, each row shows
// the picture of its theme at its left, and a quiet placeholder until the picture is there.
class CORVANE_EXPORT ProvidesThemePreviews {
public:
    virtual ~ProvidesThemePreviews() = default;

    // A picture of the theme in the file at path (a theme file of the module's clone), about size
    // device-independent pixels; a larger one is scaled down. A null image means none: the row keeps
    // its placeholder. Called on worker threads, for several files at once, only for rows on screen;
    // it may take some milliseconds, but should return within a fraction of a second, since closing
    // the window waits for the calls under way.
    virtual QImage previewForThemeFile(const QString& path, QSize size) = 0;
};

} // namespace corvane
