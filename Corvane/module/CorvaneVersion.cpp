// SPDX-License-Identifier: MIT
#include "Corvane/module/CorvaneVersion.h"

extern "C" {
const double CorvaneVersionNumber = 1.0;
const unsigned char CorvaneVersionString[] = "@(#)PROGRAM:Corvane  PROJECT:Corvane-1\n";
}
