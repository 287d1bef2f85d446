// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitError.h"

#include <QString>

#include <variant>

namespace corvane {

// What a repository check found, relative to the commit the host remembered.
struct UpdateAvailable {
    // The full 40-digit lower-case id of the commit the synchronised clone stands at; the host keeps
    // it and hands it back as sinceCommit next time.
    QString commit;
};

// The check could not be completed; the git library's error, unchanged.
struct RepositoryCheckFailure {
    GitError error;
};

// The synchronised clone stands at exactly the commit the host gave.
struct UpToDate {};

using ThemeRepositoryStatus = std::variant<UpdateAvailable, RepositoryCheckFailure, UpToDate>;

} // namespace corvane
