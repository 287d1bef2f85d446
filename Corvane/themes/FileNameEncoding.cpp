// SPDX-License-Identifier: MIT
#include "Corvane/themes/FileNameEncoding.h"

namespace corvane {

namespace {

constexpr char16_t escapeBase = 0xDC00;

bool isEscapedByte(char16_t unit)
{
    return unit >= 0xDC80 && unit <= 0xDCFF;
}

// The length of the valid UTF-8 sequence at the start of `bytes` (1 to 4), or 0 when it is not one:
// overlong forms, surrogates and values beyond U+10FFFF are not valid.
qsizetype validSequenceLength(QByteArrayView bytes)
{
    const auto byte = [&bytes](qsizetype index) { return static_cast<unsigned char>(bytes[index]); };
    const unsigned char lead = byte(0);
    qsizetype length;
    unsigned char low = 0x80, high = 0xBF;
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0;
        else if (lead == 0xED)
            high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0)
            low = 0x90;
        else if (lead == 0xF4)
            high = 0x8F;
    } else {
        return 0;
    }
    if (bytes.size() < length || byte(1) < low || byte(1) > high)
        return 0;
    for (qsizetype index = 2; index < length; ++index) {
        if (byte(index) < 0x80 || byte(index) > 0xBF)
            return 0;
    }
    return length;
}

} // namespace

QString FileNameEncoding::decode(QByteArrayView encoded)
{
    QString text;
    text.reserve(encoded.size());
    qsizetype start = 0; // of the valid run not yet appended
    qsizetype index = 0;
    while (index < encoded.size()) {
        const qsizetype length = validSequenceLength(encoded.sliced(index));
        if (length > 0) {
            index += length;
            continue;
        }
        text += QString::fromUtf8(encoded.sliced(start, index - start));
        text += QChar(static_cast<char16_t>(escapeBase + static_cast<unsigned char>(encoded[index])));
        start = ++index;
    }
    text += QString::fromUtf8(encoded.sliced(start));
    return text;
}

std::optional<QByteArray> FileNameEncoding::encode(QStringView name)
{
    QByteArray bytes;
    bytes.reserve(name.size());
    qsizetype start = 0; // of the run not yet appended
    for (qsizetype index = 0; index < name.size(); ++index) {
        const QChar unit = name[index];
        if (!unit.isSurrogate())
            continue;
        if (unit.isHighSurrogate() && index + 1 < name.size() && name[index + 1].isLowSurrogate()) {
            ++index;
            continue;
        }
        if (!isEscapedByte(unit.unicode()))
            return std::nullopt;
        bytes += name.sliced(start, index - start).toUtf8();
        bytes += static_cast<char>(unit.unicode() - escapeBase);
        start = index + 1;
    }
    bytes += name.sliced(start).toUtf8();
    return bytes;
}

QByteArray FileNameEncoding::encodeOrEmpty(QStringView name)
{
    return encode(name).value_or(QByteArray());
}

QString FileNameEncoding::displayed(QStringView name)
{
    QString text;
    text.reserve(name.size());
    for (const QChar unit : name) {
        if (isEscapedByte(unit.unicode()))
            text += QStringLiteral("\\x%1").arg(unit.unicode() - escapeBase, 2, 16, QLatin1Char('0'));
        else
            text += unit;
    }
    return text;
}

} // namespace corvane
