// SPDX-License-Identifier: MIT
#pragma once

namespace corvane {

struct CopyCommand;

// What new and updated themes share: the copy that installs them.
struct InstallableTheme {
    virtual ~InstallableTheme() = default;
    virtual const CopyCommand& installation() const = 0;

protected:
    InstallableTheme() = default;
    InstallableTheme(const InstallableTheme&) = default;
    InstallableTheme& operator=(const InstallableTheme&) = default;
};

} // namespace corvane
