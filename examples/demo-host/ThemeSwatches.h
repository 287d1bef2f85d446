// SPDX-License-Identifier: MIT
#pragma once

#include <Corvane/ui/ProvidesThemePreviews.h>

// The demo's previews: a tiny editor drawn in the theme's own colours, read from its file.
class ThemeSwatches final : public corvane::ProvidesThemePreviews {
public:
    QImage previewForThemeFile(const QString& path, QSize size) override;
};
