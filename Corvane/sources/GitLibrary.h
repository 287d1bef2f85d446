// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitError.h"
#include "Corvane/sources/TransferLimits.h"

#include <QUrl>

#include <chrono>

namespace corvane {

// The module's one door to libgit2's process state. Initialises the library once per process and never
// changes its process-wide options: a host may use libgit2 for its own work.
class GitLibrary {
public:
    // Safe to call from any thread, any number of times; the first call initialises.
    static void ensureInitialized();

    // The limits of every clone and fetch the module makes: 60 seconds for each stage unless a host or
    // a test changes them. They are the module's own; libgit2's process-wide options are never touched.
    static TransferLimits transferLimits();
    static void setTransferLimits(TransferLimits limits);
};

// The error of a failed libgit2 call, made on the failing thread from its return code and the library's
// last error. Any user:password in URLs of the message is removed; remote names the URL the operation
// used, so its credentials are removed wherever they appear.
GitError makeGitError(int code, const QUrl& remote = {});

} // namespace corvane
