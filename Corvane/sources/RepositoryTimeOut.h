// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitError.h"

#include <QUrl>

#include <chrono>

namespace corvane {

// The failure of a repository that did not answer within the time allowed, named as every git
// message names it: without user name or password.
GitError repositoryTimeOut(const QUrl& remoteRepositoryURL, std::chrono::milliseconds timeLimit);

} // namespace corvane
