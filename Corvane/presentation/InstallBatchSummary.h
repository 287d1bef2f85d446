// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace corvane {

// What an install batch did, for the notice that offers to undo it.
struct InstallBatchSummary {
    qsizetype installed = 0; // new themes
    qsizetype updated = 0;   // themes that replaced an installed file
    QString themeName;       // the theme's name, when the batch wrote just one

    qsizetype total() const { return installed + updated; }
};

} // namespace corvane
