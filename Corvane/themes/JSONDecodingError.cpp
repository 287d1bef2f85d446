// SPDX-License-Identifier: MIT
#include "Corvane/themes/JSONDecodingError.h"

#include "Corvane/module/Localized.h"

namespace corvane {
namespace {

// Messages name a file by its bare path, not its URL.
QString barePath(const QUrl& url)
{
    return url.isLocalFile() ? url.toLocalFile() : url.path();
}

QString caseText(const JSONDecodingError::DataReadingFailed& reason)
{
    //% "reading Data from '%1' failed: %2"
    const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecodingError.dataReadingFailed"),
                                           "reading Data from '%1' failed: %2");
    return fillPlaceholders(format, {barePath(reason.url), reason.error.errorDescription()});
}

QString caseText(const JSONDecodingError::JSONDecodingFailed& reason)
{
    //% "decoding JSON from '%1' failed: %2"
    const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecodingError.jsonDecodingFailed"),
                                           "decoding JSON from '%1' failed: %2");
    return fillPlaceholders(format, {barePath(reason.url), reason.error.errorDescription()});
}

} // namespace

QString JSONDecodingError::errorDescription() const
{
    //% "Could not decode JSON, %1"
    const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecodingError.base"), "Could not decode JSON, %1");
    return fillPlaceholders(format, {std::visit([](const auto& reason) { return caseText(reason); }, m_reason)});
}

} // namespace corvane
