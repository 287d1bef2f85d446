// SPDX-License-Identifier: MIT
#include "Corvane/presentation/ListSummary.h"

#include "Corvane/module/Localized.h"

#include <QLocale>

namespace corvane {
namespace {

QString counted(const QString& format, qint64 count)
{
    return fillPlaceholders(format, {QLocale().toString(count)});
}

} // namespace

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
    if (minutes == 1)
        //% "checked 1 minute ago"
        return localizedString(QT_TRID_NOOP("corvane.summary.checked-minute"), "checked 1 minute ago");
    if (hours < 1)
        //% "checked %@ minutes ago"
        return counted(localizedString(QT_TRID_NOOP("corvane.summary.checked-minutes"), "checked %@ minutes ago"),
                       minutes);
    if (hours == 1)
        //% "checked 1 hour ago"
        return localizedString(QT_TRID_NOOP("corvane.summary.checked-hour"), "checked 1 hour ago");
    if (days < 1)
        //% "checked %@ hours ago"
        return counted(localizedString(QT_TRID_NOOP("corvane.summary.checked-hours"), "checked %@ hours ago"), hours);
    if (days == 1)
        //% "checked 1 day ago"
        return localizedString(QT_TRID_NOOP("corvane.summary.checked-day"), "checked 1 day ago");
    //% "checked %@ days ago"
    return counted(localizedString(QT_TRID_NOOP("corvane.summary.checked-days"), "checked %@ days ago"), days);
}

QString listSummary(qsizetype themeCount, std::chrono::seconds sinceCheck)
{
    const QString themes = themeCount == 1
        //% "1 theme to install or update"
        ? localizedString(QT_TRID_NOOP("corvane.summary.theme"), "1 theme to install or update")
        //% "%@ themes to install or update"
        : counted(localizedString(QT_TRID_NOOP("corvane.summary.themes"), "%@ themes to install or update"),
                  themeCount);
    //% "%@ · %@"
    return fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.summary.line"), "%@ · %@"),
                            {themes, checkedAgo(sinceCheck)});
}

} // namespace corvane
