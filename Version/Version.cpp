// SPDX-License-Identifier: MIT
#include "Version/Version.h"

#include <QTextBoundaryFinder>

#include <limits>
#include <optional>

namespace corvane {
namespace {

constexpr int maximumSplits = 3;

// At most maximumSplits positions, held in place: reading a version allocates nothing.
struct Separators {
    qsizetype positions[maximumSplits];
    int count = 0;

    int size() const { return count; }
    void push_back(qsizetype position) { positions[count++] = position; }
    const qsizetype* begin() const { return positions; }
    const qsizetype* end() const { return positions + count; }
};

// The positions of the full stops that stand as characters of their own: a full stop that a
// combining mark (or any other grapheme extender) attaches to is part of a larger character.
Separators separatorPositions(const QString& text)
{
    Separators positions;
    bool ascii = true;
    for (QChar c : text) {
        if (c.unicode() >= 0x80) {
            ascii = false;
            break;
        }
    }
    if (ascii) {
        for (qsizetype i = 0; i < text.size() && positions.size() < maximumSplits; ++i) {
            if (text[i] == u'.')
                positions.push_back(i);
        }
        return positions;
    }
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    while (positions.size() < maximumSplits) {
        const qsizetype end = graphemes.toNextBoundary();
        if (end < 0)
            break;
        if (end - start == 1 && text[start] == u'.')
            positions.push_back(start);
        start = end;
    }
    return positions;
}

// An optional single sign, then one or more ASCII digits, within the signed 64-bit range; the
// absolute value is what counts. Anything else yields nothing.
std::optional<std::int64_t> absoluteNumber(QStringView piece)
{
    qsizetype i = 0;
    if (!piece.isEmpty() && (piece[0] == u'+' || piece[0] == u'-'))
        i = 1;
    if (i == piece.size())
        return std::nullopt;
    constexpr std::uint64_t limit = std::numeric_limits<std::int64_t>::max();
    std::uint64_t value = 0;
    for (; i < piece.size(); ++i) {
        const char16_t c = piece[i].unicode();
        if (c < u'0' || c > u'9')
            return std::nullopt;
        const std::uint64_t digit = c - u'0';
        // Beyond INT64_MAX the only valid number is INT64_MIN itself, whose absolute value has no
        // signed form; it is dropped like every other number out of range.
        if (value > (limit - digit) / 10)
            return std::nullopt;
        value = value * 10 + digit;
    }
    return static_cast<std::int64_t>(value);
}

} // namespace

std::expected<Version, Version::ParsingError> Version::fromString(const QString& text)
{
    std::int64_t numbers[3] = {0, 0, 0};
    int found = 0;
    qsizetype pieceStart = 0;
    const auto take = [&](QStringView piece) {
        if (found == 3)
            return;
        if (const auto number = absoluteNumber(piece))
            numbers[found++] = *number;
    };
    for (const qsizetype separator : separatorPositions(text)) {
        take(QStringView(text).mid(pieceStart, separator - pieceStart));
        pieceStart = separator + 1;
    }
    take(QStringView(text).mid(pieceStart));
    if (found == 0)
        return std::unexpected(ParsingError{QStringLiteral("Version.init(string:) expects to find at least one number")});
    return Version(numbers[0], numbers[1], numbers[2]);
}

QString Version::toString() const
{
    return QString::number(m_major) + u'.' + QString::number(m_minor) + u'.' + QString::number(m_patch);
}

} // namespace corvane
