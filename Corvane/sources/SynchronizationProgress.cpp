// SPDX-License-Identifier: MIT
#include "Corvane/sources/SynchronizationProgress.h"

#include "Corvane/module/Localized.h"

#include <QLocale>

namespace corvane {

QString SynchronizationProgress::text() const
{
    const QLocale locale;
    const QString doneText = locale.toString(done);
    const QString totalText = locale.toString(total);
    switch (stage) {
    case Stage::receiving: {
        //% "Receiving objects: %@ of %@ (%@)…"
        const QString format = localizedString(QT_TRID_NOOP("corvane.sync.receiving"), "Receiving objects: %@ of %@ (%@)…");
        return fillPlaceholders(format, {doneText, totalText, locale.formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat)});
    }
    case Stage::resolving: {
        //% "Resolving changes: %@ of %@…"
        const QString format = localizedString(QT_TRID_NOOP("corvane.sync.resolving"), "Resolving changes: %@ of %@…");
        return fillPlaceholders(format, {doneText, totalText});
    }
    case Stage::checkingOut:
        break;
    }
    //% "Checking out files: %@ of %@…"
    const QString format = localizedString(QT_TRID_NOOP("corvane.sync.checking-out"), "Checking out files: %@ of %@…");
    return fillPlaceholders(format, {doneText, totalText});
}

} // namespace corvane
