// SPDX-License-Identifier: MIT
#include "Corvane/sources/GitLibrary.h"

#include "Corvane/module/AnyError.h"
#include "Corvane/sources/CredentialRedaction.h"

#include <git2.h>

#include <mutex>

namespace corvane {
namespace {

std::mutex limitsMutex;
TransferLimits currentLimits;

} // namespace

void GitLibrary::ensureInitialized()
{
    // The library counts its initialisations; one for the module's lifetime in the process is enough,
    // and a host's own init/shutdown pairs stay balanced around it.
    static const int initialized = git_libgit2_init();
    (void)initialized;
}

TransferLimits GitLibrary::transferLimits()
{
    std::lock_guard guard(limitsMutex);
    return currentLimits;
}

void GitLibrary::setTransferLimits(TransferLimits limits)
{
    std::lock_guard guard(limitsMutex);
    currentLimits = limits;
}

GitError makeGitError(int code, const QUrl& remote)
{
    const git_error* last = git_error_last();
    QString message;
    int errorClass = GIT_ERROR_NONE;
    if (last && last->message && *last->message) {
        message = QString::fromUtf8(last->message).trimmed();
        errorClass = last->klass;
    } else {
        message = genericErrorDescription("GitError", code);
    }
    git_error_clear();
    return GitError(code, errorClass, removeCredentials(message, remote));
}

} // namespace corvane
