// SPDX-License-Identifier: MIT
#include "OutputField.h"

#include "Corvane/themes/FileNameEncoding.h"

namespace corvane::cli {

QString escapeField(const QString& text)
{
    QString escaped;
    escaped.reserve(text.size());
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        switch (unit) {
        case u'\\':
            escaped += u"\\\\";
            break;
        case u'\n':
            escaped += u"\\n";
            break;
        case u'\r':
            escaped += u"\\r";
            break;
        case u'\t':
            escaped += u"\\t";
            break;
        default:
            if (unit < 0x20 || unit == 0x7F)
                escaped += QStringLiteral("\\x%1").arg(unit, 2, 16, QLatin1Char('0'));
            else if (unit >= 0x80 && unit <= 0x9F)
                escaped += QStringLiteral("\\u%1").arg(unit, 4, 16, QLatin1Char('0'));
            else
                escaped += c;
        }
    }
    // Bytes of names that are not UTF-8 last, so that their backslashes are not escaped again.
    return FileNameEncoding::displayed(escaped);
}

QString styleName(Theme::Style style)
{
    return style == Theme::Style::dark ? QStringLiteral("dark") : QStringLiteral("light");
}

} // namespace corvane::cli
