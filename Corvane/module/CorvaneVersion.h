// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

extern "C" {
// The library's version as a number (1.0) and as a "what" string for tools that scan binaries.
CORVANE_EXPORT extern const double CorvaneVersionNumber;
CORVANE_EXPORT extern const unsigned char CorvaneVersionString[];
}
