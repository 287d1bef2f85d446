// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QString>

#include <initializer_list>

namespace corvane {

// The host's translation of a text id, or the English default when no installed translator has one.
// Call sites name the id with QT_TRID_NOOP under a "//%" comment holding the same English text, so
// lupdate extracts a complete template for the host's translators.
CORVANE_EXPORT QString localizedString(const char* id, const char* englishDefault);

// Fills each "%@" of a looked-up format, in order, with the next argument. Arguments are data: a "%"
// inside a file name stays as it is, and a "%@" inside an argument is not filled again.
CORVANE_EXPORT QString fillPlaceholders(const QString& format, std::initializer_list<QString> arguments);

} // namespace corvane
