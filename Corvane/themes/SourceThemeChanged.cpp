// SPDX-License-Identifier: MIT
#include "Corvane/themes/SourceThemeChanged.h"

#include "Corvane/module/Localized.h"

namespace corvane {

QString SourceThemeChanged::errorDescription() const
{
    //% "The theme file '%1' changed in the repository after the list was made; nothing was installed."
    const QString format = localizedString(
        QT_TRID_NOOP("corvane.file-manager.source-theme-changed"),
        "The theme file '%1' changed in the repository after the list was made; nothing was installed.");
    return fillPlaceholders(format, {fileName});
}

} // namespace corvane
