// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <compare>
#include <cstdint>
#include <expected>

namespace corvane {

// A theme's version: three signed 64-bit numbers, read leniently from the text a theme file holds.
class Version {
public:
    // The one failure of reading: no number at all in the text.
    struct ParsingError {
        static constexpr const char* typeName = "Version.ParsingError";
        QString message;
    };

    // Stores exactly these numbers, negative ones included; no checks.
    constexpr Version(std::int64_t major, std::int64_t minor, std::int64_t patch)
        : m_major(major), m_minor(minor), m_patch(patch) {}

    // Splits at most three times at ".", keeps the pieces that are plain decimal numbers in range,
    // takes their absolute values and fills major, minor, patch from the first three (missing ones are 0).
    // A piece spelling -9223372036854775808 is dropped like any other number out of range: its
    // absolute value has no 64-bit form, and a version read from text is never negative.
    static std::expected<Version, ParsingError> fromString(const QString& text);

    constexpr std::int64_t major() const { return m_major; }
    constexpr std::int64_t minor() const { return m_minor; }
    constexpr std::int64_t patch() const { return m_patch; }

    // "major.minor.patch", always all three, plain decimal.
    QString toString() const;

    // Field by field, in order: 1.10.0 > 1.9.0.
    constexpr auto operator<=>(const Version&) const = default;

private:
    std::int64_t m_major;
    std::int64_t m_minor;
    std::int64_t m_patch;
};

} // namespace corvane
