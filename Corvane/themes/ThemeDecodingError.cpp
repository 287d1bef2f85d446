// SPDX-License-Identifier: MIT
#include "Corvane/themes/ThemeDecodingError.h"

#include "Corvane/module/Localized.h"

namespace corvane {

QString ThemeDecodingError::errorDescription() const
{
    //% "Theme decoding failed: %1"
    const QString format = localizedString(QT_TRID_NOOP("corvane.ThemeDecodingError.base"), "Theme decoding failed: %1");
    return fillPlaceholders(format, {error.errorDescription()});
}

} // namespace corvane
