// SPDX-License-Identifier: MIT
#include "Corvane/sources/RepositoryTimeOut.h"

#include "Corvane/module/Localized.h"
#include "Corvane/sources/CredentialRedaction.h"

#include <git2/errors.h>

namespace corvane {

GitError repositoryTimeOut(const QUrl& remoteRepositoryURL, std::chrono::milliseconds timeLimit)
{
    //% "The theme repository %@ did not answer within %@ seconds."
    const QString format = localizedString(QT_TRID_NOOP("corvane.comparison.time-out"),
                                           "The theme repository %@ did not answer within %@ seconds.");
    const QString seconds = QString::number(static_cast<double>(timeLimit.count()) / 1000.0);
    return GitError(GIT_ERROR, GIT_ERROR_NET, fillPlaceholders(format, {displayUrl(remoteRepositoryURL), seconds}));
}

} // namespace corvane
