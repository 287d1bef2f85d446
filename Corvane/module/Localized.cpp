// SPDX-License-Identifier: MIT
#include "Corvane/module/Localized.h"
#include "Corvane/module/AnyError.h"

#include <QByteArray>
#include <QLocale>

#include <climits>
#include <cmath>

namespace corvane {

namespace {

// The count that picks a translation's plural form. Forms are chosen on whole numbers; a fraction
// ("0.5 seconds") takes the form of two, which is the form most languages give fractions. Counts
// beyond int keep their last six digits, on which the plural rules of every language depend.
int pluralFormCount(double count)
{
    if (!std::isfinite(count) || count < 0)
        return 2;
    if (count != std::floor(count))
        return 2;
    if (count <= INT_MAX)
        return int(count);
    return int(std::fmod(count, 1000000.0)) + 1000000;
}

} // namespace

QString localizedString(const char* id, const char* englishDefault)
{
    const QString translated = qtTrId(id);
    if (translated.isEmpty() || translated == QLatin1StringView(id))
        return QString::fromUtf8(englishDefault);
    return translated;
}

QString localizedCountedString(const char* id, double count, const char* englishOne, const char* englishOther)
{
    const int formCount = pluralFormCount(count);
    const QString translated = qtTrId(id, formCount);
    if (translated.isEmpty() || translated == QLatin1StringView(id))
        return QString::fromUtf8(count == 1 ? englishOne : englishOther);
    return translated;
}

QString fillPlaceholders(const QString& format, std::initializer_list<QString> arguments)
{
    QString result;
    result.reserve(format.size() + 64);
    qsizetype from = 0;
    qsizetype at = 0;
    int unnumbered = 0;
    while ((at = format.indexOf(u'%', at)) >= 0) {
        // "%" followed by one or two digits names an argument; "%10" is the tenth, never the first and a "0".
        qsizetype end = at + 1;
        int number = 0;
        while (end < format.size() && end - at <= 2 && format[end].isDigit() && format[end].unicode() < 128) {
            number = number * 10 + (format[end].unicode() - u'0');
            ++end;
        }
        // A host's catalogue written with unnumbered "%@" markers still gets its arguments, in order.
        if (end == at + 1 && end < format.size() && format[end] == u'@') {
            number = ++unnumbered;
            ++end;
        }
        if (number < 1 || number > qsizetype(arguments.size())) {
            ++at;
            continue;
        }
        result += QStringView(format).mid(from, at - from);
        result += *(arguments.begin() + (number - 1));
        from = at = end;
    }
    result += QStringView(format).mid(from);
    return result;
}

QString localizedNumber(double quantity)
{
    const QLocale locale;
    if (quantity == std::floor(quantity) && std::abs(quantity) < 9.0e15)
        return locale.toString(qint64(quantity));
    return locale.toString(quantity, 'f', QLocale::FloatingPointShortest);
}

QString genericErrorDescription(const char* typeName, int code)
{
    //% "The operation couldn't be completed. (%1 error %2.)"
    const QString format = localizedString(QT_TRID_NOOP("corvane.generic-error.description"),
                                           "The operation couldn't be completed. (%1 error %2.)");
    // The code identifies the error; it is not a quantity and keeps its plain digits.
    return fillPlaceholders(format, {QString::fromUtf8(typeName), QString::number(code)});
}

} // namespace corvane
