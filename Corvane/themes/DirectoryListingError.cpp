// SPDX-License-Identifier: MIT
#include "Corvane/themes/DirectoryListingError.h"

#include "Corvane/module/UrlText.h"

namespace corvane {

// These two texts are not localised: they carry the URL or the platform's reason almost alone.
QString DirectoryListingError::errorDescription() const
{
    if (const auto* notADirectory = std::get_if<NotADirectory>(&m_reason)) {
        // The full URL, scheme included, as the user would paste it into a browser.
        return QStringLiteral("File at ") + urlText(notADirectory->url) + QStringLiteral(" appears not to be a directory.");
    }
    return QStringLiteral("Listing files in the directory failed. Reason: ")
        + std::get<ListingFailed>(m_reason).wrapped.errorDescription();
}

bool DirectoryListingError::operator==(const DirectoryListingError& other) const
{
    if (m_reason.index() != other.m_reason.index())
        return false;
    if (const auto* notADirectory = std::get_if<NotADirectory>(&m_reason))
        return notADirectory->url == std::get<NotADirectory>(other.m_reason).url;
    return true; // whatever two listing failures wrap, they are the same failure
}

} // namespace corvane
