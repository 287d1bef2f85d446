// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include "Corvane/module/AnyError.h"
#include "Corvane/module/Result.h"

namespace corvane {

struct CopyCommand;

// Installs one theme file: copies the command's source to its destination, replacing what stands there.
class CORVANE_EXPORT FileCopier {
public:
    virtual ~FileCopier() = default;
    virtual Result<void, AnyError> copy(const CopyCommand& command) const = 0;
};

} // namespace corvane
