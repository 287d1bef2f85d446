// SPDX-License-Identifier: MIT
#include "Corvane/sources/RepositoryTimeOut.h"

#include "Corvane/module/Localized.h"
#include "Corvane/sources/CredentialRedaction.h"

#include <git2/errors.h>

namespace corvane {

GitError repositoryTimeOut(const QUrl& remoteRepositoryURL, std::chrono::milliseconds timeLimit)
{
    const double seconds = static_cast<double>(timeLimit.count()) / 1000.0;
    //% "The theme repository %1 did not answer within %2 seconds."
    const QString format = localizedCountedString(QT_TRID_N_NOOP("corvane.comparison.time-out"), seconds,
                                                  "The theme repository %1 did not answer within %2 second.",
                                                  "The theme repository %1 did not answer within %2 seconds.");
    return GitError(GIT_ERROR, GIT_ERROR_NET,
                    fillPlaceholders(format, {displayUrl(remoteRepositoryURL), localizedNumber(seconds)}));
}

} // namespace corvane
