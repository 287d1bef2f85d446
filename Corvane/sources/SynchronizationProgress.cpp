// SPDX-License-Identifier: MIT
#include "Corvane/sources/SynchronizationProgress.h"

#include "Corvane/module/Localized.h"

#include <QLocale>

namespace corvane {

QString SynchronizationProgress::text() const
{
    // Counts in the user's locale, the words agreeing with the total.
    const QString doneText = localizedNumber(double(done));
    const QString totalText = localizedNumber(double(total));
    switch (stage) {
    case Stage::receiving: {
        //% "Receiving objects: %1 of %2 (%3)…"
        const QString format = localizedCountedString(QT_TRID_N_NOOP("corvane.sync.receiving"), double(total),
                                                      "Receiving objects: %1 of %2 (%3)…",
                                                      "Receiving objects: %1 of %2 (%3)…");
        return fillPlaceholders(format,
                                {doneText, totalText, QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat)});
    }
    case Stage::resolving: {
        //% "Resolving changes: %1 of %2…"
        const QString format = localizedCountedString(QT_TRID_N_NOOP("corvane.sync.resolving"), double(total),
                                                      "Resolving changes: %1 of %2…", "Resolving changes: %1 of %2…");
        return fillPlaceholders(format, {doneText, totalText});
    }
    case Stage::checkingOut:
        break;
    }
    //% "Checking out files: %1 of %2…"
    const QString format = localizedCountedString(QT_TRID_N_NOOP("corvane.sync.checking-out"), double(total),
                                                  "Checking out files: %1 of %2…", "Checking out files: %1 of %2…");
    return fillPlaceholders(format, {doneText, totalText});
}

} // namespace corvane
