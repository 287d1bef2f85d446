// SPDX-License-Identifier: MIT
#include "Corvane/sources/LocalThemeFetchingError.h"

#include "Corvane/module/Localized.h"

namespace corvane {

QString LocalThemeFetchingError::errorDescription() const
{
    const QString caseText = std::visit(
        [](const auto& reason) -> QString {
            using Reason = std::decay_t<decltype(reason)>;
            if constexpr (std::is_same_v<Reason, FileError>) {
                //% "File error: %1"
                const QString format = localizedString(QT_TRID_NOOP("corvane.LocalThemeFetchingError.fileError"),
                                                       "File error: %1");
                return fillPlaceholders(format, {reason.error.errorDescription()});
            } else {
                return reason.error.errorDescription();
            }
        },
        m_reason);
    //% "Local theme fetching error: %1"
    const QString format = localizedString(QT_TRID_NOOP("corvane.LocalThemeFetchingError.base"),
                                           "Local theme fetching error: %1");
    return fillPlaceholders(format, {caseText});
}

} // namespace corvane
