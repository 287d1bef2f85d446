// SPDX-License-Identifier: MIT
#include "Version/Version.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
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

struct CodePointRange {
    char32_t first;
    char32_t last;
};

#include "GraphemeBreakTable.inc"

template <std::size_t size>
bool contains(const CodePointRange (&ranges)[size], char32_t codePoint)
{
    if (codePoint < ranges[0].first) // every ASCII character: no search
        return false;
    const auto after = std::upper_bound(std::begin(ranges), std::end(ranges), codePoint,
                                        [](char32_t point, const CodePointRange& range) { return point < range.first; });
    return after != std::begin(ranges) && codePoint <= std::prev(after)->last;
}

// The code point that starts at `i`; a lone surrogate stands for itself.
char32_t codePointAt(const QString& text, qsizetype i)
{
    const QChar c = text[i];
    if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(c, text[i + 1]);
    return c.unicode();
}

// The code point that ends just before `i`.
char32_t codePointBefore(const QString& text, qsizetype i)
{
    const QChar c = text[i - 1];
    if (c.isLowSurrogate() && i >= 2 && text[i - 2].isHighSurrogate())
        return QChar::surrogateToUcs4(text[i - 2], c);
    return c.unicode();
}

// Whether the full stop at `i` is an extended grapheme cluster of its own. Of the cluster rules only
// two can join a full stop to its neighbours: a Prepend before it, and an Extend, ZWJ or SpacingMark
// after it. Qt's boundary finder tailors Indic, Thai, Tibetan, Myanmar and Khmer text and there
// splits a full stop from the mark that follows it, so the properties are looked up here instead.
bool standsAlone(const QString& text, qsizetype i)
{
    if (i > 0 && contains(prependsCluster, codePointBefore(text, i)))
        return false;
    return i + 1 == text.size() || !contains(continuesCluster, codePointAt(text, i + 1));
}

// The positions of the full stops that stand as characters of their own: a full stop that a
// combining mark (or any other character continuing a cluster) attaches to is part of a larger one.
Separators separatorPositions(const QString& text)
{
    Separators positions;
    for (qsizetype i = 0; i < text.size() && positions.size() < maximumSplits; ++i) {
        if (text[i] == u'.' && standsAlone(text, i))
            positions.push_back(i);
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
