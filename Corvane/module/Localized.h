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

// The host's translation of a text that counts something, in the grammatical form `count` calls for
// in the host's language, or the English default for exactly one or for any other count. Call sites
// name the id with QT_TRID_N_NOOP under a "//%" comment holding the English text for other counts, so
// translators get every plural form of their language. The count itself is one of the format's
// numbered markers, filled like any other argument (see localizedNumber).
CORVANE_EXPORT QString localizedCountedString(const char* id, double count, const char* englishOne, const char* englishOther);

// Fills each "%1" to "%99" of a looked-up format with the argument of that number, so translators may
// reorder them. Arguments are data: a "%" or "%1" inside a file name stays as it is and is not filled
// again. A marker without an argument stays as it is. Unnumbered "%@" markers, as in a host's catalogue
// made from the English texts of earlier versions, take the arguments in order.
CORVANE_EXPORT QString fillPlaceholders(const QString& format, std::initializer_list<QString> arguments);

// A quantity as the user's locale writes it: 5242955 reads "5,242,955" in English, "5.242.955" in
// German, and 0.5 reads "0,5" in German.
CORVANE_EXPORT QString localizedNumber(double quantity);

} // namespace corvane
