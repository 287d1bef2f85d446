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
    //% "reading Data from '%@' failed: %@"
    const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecodingError.dataReadingFailed"),
                                           "reading Data from '%@' failed: %@");
    return fillPlaceholders(format, {barePath(reason.url), reason.error.errorDescription()});
}

QString caseText(const JSONDecodingError::JSONDecodingFailed& reason)
{
    //% "decoding JSON from '%@' failed: %@"
    const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecodingError.jsonDecodingFailed"),
                                           "decoding JSON from '%@' failed: %@");
    return fillPlaceholders(format, {barePath(reason.url), reason.error.errorDescription()});
}

} // namespace

QString JSONDecodingError::errorDescription() const
{
    //% "Could not decode JSON, %@"
    const QString format = localizedString(QT_TRID_NOOP("corvane.JSONDecodingError.base"), "Could not decode JSON, %@");
    return fillPlaceholders(format, {std::visit([](const auto& reason) { return caseText(reason); }, m_reason)});
}

} // namespace corvane
