// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitError.h"

#include <QUrl>

#include <chrono>

namespace corvane {

// The module's one door to libgit2's process state. Initialises the library once per process and never
// changes its process-wide options: a host may use libgit2 for its own work.
class GitLibrary {
public:
    // Safe to call from any thread, any number of times; the first call initialises.
    static void ensureInitialized();

    // A transfer that makes no progress for this long is aborted. 60 seconds unless a test shortens it.
    static std::chrono::milliseconds noProgressLimit();
    static void setNoProgressLimit(std::chrono::milliseconds limit);
};

// The error of a failed libgit2 call, made on the failing thread from its return code and the library's
// last error. Any user:password in URLs of the message is removed; remote names the URL the operation
// used, so its credentials are removed wherever they appear.
GitError makeGitError(int code, const QUrl& remote = {});

} // namespace corvane
