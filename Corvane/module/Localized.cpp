// SPDX-License-Identifier: MIT
#include "Corvane/module/Localized.h"
#include "Corvane/module/AnyError.h"

#include <QByteArray>

namespace corvane {

QString localizedString(const char* id, const char* englishDefault)
{
    const QString translated = qtTrId(id);
    if (translated.isEmpty() || translated == QLatin1StringView(id))
        return QString::fromUtf8(englishDefault);
    return translated;
}

QString fillPlaceholders(const QString& format, std::initializer_list<QString> arguments)
{
    QString result;
    result.reserve(format.size() + 64);
    auto next = arguments.begin();
    qsizetype from = 0;
    while (true) {
        const qsizetype at = format.indexOf(u"%@", from);
        if (at < 0 || next == arguments.end())
            break;
        result += QStringView(format).mid(from, at - from);
        result += *next++;
        from = at + 2;
    }
    result += QStringView(format).mid(from);
    return result;
}

QString genericErrorDescription(const char* typeName, int code)
{
    //% "The operation couldn't be completed. (%@ error %@.)"
    const QString format = localizedString(QT_TRID_NOOP("corvane.generic-error.description"),
                                           "The operation couldn't be completed. (%@ error %@.)");
    return fillPlaceholders(format, {QString::fromUtf8(typeName), QString::number(code)});
}

} // namespace corvane
