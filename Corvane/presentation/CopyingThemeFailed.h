// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/AnyError.h"

#include <QString>

namespace corvane {

// The subject of the copying-failed alert's detail text. It deliberately has no description of its
// own: the detail shows the generic text naming this type, while the message names the file.
struct CopyingThemeFailed {
    static constexpr const char* typeName = "Corvane.CopyingThemeFailed";

    QString filename;
    AnyError error;
};

} // namespace corvane
