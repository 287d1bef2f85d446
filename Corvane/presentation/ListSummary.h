// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QString>

#include <chrono>

namespace corvane {

// The line above the list: how many themes wait, and how long ago the list was compared, as in
// "5 themes to install or update · checked 2 minutes ago". Numbers in the host's locale.
CORVANE_EXPORT QString listSummary(qsizetype themeCount, std::chrono::seconds sinceCheck);

// "just now", "1 minute ago", "3 hours ago", "2 days ago": the age of a check, in the host's language.
QString checkedAgo(std::chrono::seconds sinceCheck);

} // namespace corvane
