// SPDX-License-Identifier: MIT
// Theme files come from a remote repository: any bytes. Decoding never crashes or hangs, a failure
// always has a description, and the parser reused across files (as a reading reuses it) gives the
// same answer as a fresh one and as decoding in place from a padded buffer.

#include "Corvane/themes/Theme.h"
#include "Corvane/themes/ThemeJsonParser.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

using namespace corvane;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void requireSame(const Result<Theme, AnyError>& left, const Result<Theme, AnyError>& right)
{
    require(left.has_value() == right.has_value());
    if (left) {
        require(*left == *right);
        require(left->identifier.name() == right->identifier.name());
        require(qHash(left->identifier, 3) == qHash(right->identifier, 3));
    } else {
        require(left.error().errorDescription() == right.error().errorDescription());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static ThemeJsonParser reused;
    const QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    const auto theme = reused.decode(bytes);
    if (theme) {
        const Theme::Style style = theme->identifier.style();
        require(style == Theme::Style::dark || style == Theme::Style::light);
        require(theme->version.major() >= 0 && theme->version.minor() >= 0 && theme->version.patch() >= 0);
        require(*theme == *theme);
    } else {
        require(!theme.error().errorDescription().isEmpty());
    }

    ThemeJsonParser fresh;
    requireSame(theme, fresh.decode(bytes));

    // In place, as the decoder reads files: the padding after the document holds garbage here, to
    // show that nothing past the end is read as content.
    auto padded = std::make_unique<char[]>(size + ThemeJsonParser::padding);
    if (size > 0)
        std::memcpy(padded.get(), data, size);
    std::memset(padded.get() + size, '}', ThemeJsonParser::padding);
    requireSame(theme, fresh.decodePadded(padded.get(), size));
    return 0;
}
