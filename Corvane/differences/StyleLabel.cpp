// SPDX-License-Identifier: MIT
#include "Corvane/differences/StyleLabel.h"

#include "Corvane/module/Localized.h"

namespace corvane {

QString styleLabel(Theme::Style style)
{
    switch (style) {
    case Theme::Style::light:
        //% "Light"
        return localizedString(QT_TRID_NOOP("corvane.style.light"), "Light");
    case Theme::Style::dark:
        //% "Dark"
        return localizedString(QT_TRID_NOOP("corvane.style.dark"), "Dark");
    }
    Q_UNREACHABLE();
    return {};
}

} // namespace corvane
