// SPDX-License-Identifier: MIT
#include "Corvane/sources/RemoteThemeFetchingError.h"

#include "Corvane/module/Localized.h"

namespace corvane {

QString RemoteThemeFetchingError::errorDescription() const
{
    const QString caseText = std::visit(
        [](const auto& reason) -> QString {
            using Reason = std::decay_t<decltype(reason)>;
            if constexpr (std::is_same_v<Reason, RepositoryError>) {
                //% "Repository error: %1"
                const QString format = localizedString(
                    QT_TRID_NOOP("corvane.RemoteThemeFetchingError.repositoryError"), "Repository error: %1");
                return fillPlaceholders(format, {reason.error.errorDescription()});
            } else {
                // "Theme decoding failed: " and the reading's own text.
                return reason.error.errorDescription();
            }
        },
        m_reason);
    //% "Remote theme fetching error: %1"
    const QString format = localizedString(QT_TRID_NOOP("corvane.RemoteThemeFetchingError.base"),
                                           "Remote theme fetching error: %1");
    return fillPlaceholders(format, {caseText});
}

} // namespace corvane
