// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/RemoteAccess.h"

namespace corvane::cli {

// Credentials for the tool's transfers from the user's own git set-up, so scripts need no secrets on
// the command line: for https, `git credential fill` asks the credential helpers git is configured
// with (and a refused answer is reported with `git credential reject` before asking again); for ssh,
// the keys of the ssh agent.
CredentialsProvider gitCredentialHelper();

// After a command that succeeded: the helpers' last answer was accepted, so `git credential approve`
// lets them store it (as git does after a transfer); nothing when no helper was asked.
void approveGitCredentials();

} // namespace corvane::cli
