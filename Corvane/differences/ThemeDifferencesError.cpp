// SPDX-License-Identifier: MIT
#include "Corvane/differences/ThemeDifferencesError.h"

#include "Corvane/module/Localized.h"

namespace corvane {

QString ThemeDifferencesError::errorDescription() const
{
    // Both cases carry the fetcher's error unchanged; its own text already names the side that failed.
    const QString detail = std::visit([](const auto& reason) { return reason.error.errorDescription(); }, m_reason);
    //% "Computing theme differences failed: %1"
    const QString format = localizedString(QT_TRID_NOOP("corvane.ThemeDifferencesError.base"),
                                           "Computing theme differences failed: %1");
    return fillPlaceholders(format, {detail});
}

} // namespace corvane
