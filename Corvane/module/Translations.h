// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QLocale>

namespace corvane {

// Installs the translator for Corvane's own texts in the language of `locale` (falling back as Qt
// does, from "de_AT" to "de"), from where Corvane's translations are installed: the "corvane/translations"
// folder of the installation's data directory (share/corvane/translations beside lib/ and bin/), or the
// build tree's translations/ when run from a build. Replaces the translator an earlier call installed.
// Returns whether a translation for the language was found; without one Corvane's texts stay English.
// A host's own translators, installed after this one, override any of Corvane's ids.
// Call it from the thread that owns the application object, after creating it.
CORVANE_EXPORT bool loadTranslations(const QLocale& locale = QLocale());

} // namespace corvane
