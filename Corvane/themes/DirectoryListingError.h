// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/module/AnyError.h"

#include <QUrl>

#include <variant>

namespace corvane {

// Why the files of a directory could not be listed.
class CORVANE_EXPORT DirectoryListingError {
public:
    // The URL names nothing, or something that is not a directory.
    struct NotADirectory {
        QUrl url;
    };
    // The directory exists but could not be listed; the platform's reason.
    struct ListingFailed {
        AnyError wrapped;
    };

    DirectoryListingError(NotADirectory reason) : m_reason(std::move(reason)) {}
    DirectoryListingError(ListingFailed reason) : m_reason(std::move(reason)) {}

    const std::variant<NotADirectory, ListingFailed>& reason() const { return m_reason; }

    QString errorDescription() const;

    // notADirectory values compare their URLs; any two listingFailed values are equal.
    bool operator==(const DirectoryListingError& other) const;

private:
    std::variant<NotADirectory, ListingFailed> m_reason;
};

} // namespace corvane
