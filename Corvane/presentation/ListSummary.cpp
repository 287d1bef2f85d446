// SPDX-License-Identifier: MIT
#include "Corvane/presentation/ListSummary.h"

#include "Corvane/module/Localized.h"

namespace corvane {

QString checkedAgo(std::chrono::seconds sinceCheck)
{
    using namespace std::chrono;
    // A clock set back since the check reads as "just now", not as a negative age.
    const auto minutes = duration_cast<std::chrono::minutes>(std::max(sinceCheck, seconds(0))).count();
    const auto hours = minutes / 60;
    const auto days = hours / 24;
    if (minutes < 1)
        //% "checked just now"
        return localizedString(QT_TRID_NOOP("corvane.summary.checked-now"), "checked just now");
    QString format;
    qint64 count = 0;
    if (hours < 1) {
        count = minutes;
        //% "checked %1 minutes ago"
        format = localizedCountedString(QT_TRID_N_NOOP("corvane.summary.checked-minutes"), double(count),
                                        "checked %1 minute ago", "checked %1 minutes ago");
    } else if (days < 1) {
        count = hours;
        //% "checked %1 hours ago"
        format = localizedCountedString(QT_TRID_N_NOOP("corvane.summary.checked-hours"), double(count),
                                        "checked %1 hour ago", "checked %1 hours ago");
    } else {
        count = days;
        //% "checked %1 days ago"
        format = localizedCountedString(QT_TRID_N_NOOP("corvane.summary.checked-days"), double(count),
                                        "checked %1 day ago", "checked %1 days ago");
    }
    return fillPlaceholders(format, {localizedNumber(double(count))});
}

QString listSummary(qsizetype themeCount, std::chrono::seconds sinceCheck)
{
    //% "%1 themes to install or update"
    const QString themes = localizedCountedString(QT_TRID_N_NOOP("corvane.summary.themes"), double(themeCount),
                                                  "%1 theme to install or update", "%1 themes to install or update");
    //% "%1 · %2"
    return fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.summary.line"), "%1 · %2"),
                            {fillPlaceholders(themes, {localizedNumber(double(themeCount))}), checkedAgo(sinceCheck)});
}

} // namespace corvane
