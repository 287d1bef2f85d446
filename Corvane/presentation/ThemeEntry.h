// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/module/AnyError.h"
#include "Corvane/module/Result.h"

#include <QList>
#include <QString>

#include <optional>

namespace corvane {

// One row of the updater's list, already in display form.
struct ThemeEntry {
    QString name;
    QString style;                          // the localised label
    QString authors;                        // joined with ", "
    std::optional<QString> installedVersion; // absent for a theme not installed yet
    QString remoteVersion;
    CopyCommand copyCommand;
    // "dark" or "light", as the theme file says it: a skipped version is kept under this, not under
    // the label, which changes with the language.
    QString styleKey;
};

// What the list shows: absent while a comparison runs, the rows, or the comparison's failure.
using ThemeListState = std::optional<Result<QList<ThemeEntry>, AnyError>>;

} // namespace corvane
