// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/AnyError.h"
#include "Corvane/module/Result.h"
#include "Corvane/themes/Theme.h"

#include <QByteArray>

#include <cstddef>
#include <memory>

namespace corvane {

// Decodes a theme from the bytes of a theme file. Checks run in a fixed order (top-level object,
// "name", "style", "author", "version") and the first failure is the one reported, so a file with
// several faults always reports the same one. Failures are a JSONDecoderError (one of the four JSON
// fault kinds, with its key path), the TextError of the style check, or Version::ParsingError.
// Keeps one JSON parser and its buffers for every document it decodes: not for two threads at once.
class ThemeJsonParser {
public:
    // Bytes that must be readable after a document given to decodePadded.
    static constexpr std::size_t padding = 64;

    ThemeJsonParser();
    ~ThemeJsonParser();
    ThemeJsonParser(const ThemeJsonParser&) = delete;
    ThemeJsonParser& operator=(const ThemeJsonParser&) = delete;

    // Decodes a document held anywhere in memory (the parser copies it into its own buffer).
    Result<Theme, AnyError> decode(const QByteArray& document);
    // Decodes in place, without copying: `data` must stay readable for `length + padding` bytes.
    Result<Theme, AnyError> decodePadded(const char* data, std::size_t length);

private:
    // Documents up to this size keep the parser's buffers for the next one; a larger (rare, possibly
    // hostile) one releases them, so a reader does not hold tens of megabytes for its whole life.
    static constexpr std::size_t retainedDocumentSize = 256 * 1024;

    Result<Theme, AnyError> decode(const char* data, std::size_t length, bool copy);
    Result<Theme, AnyError> decodeDocument(const char* data, std::size_t length, bool copy);

    struct Parser;
    std::unique_ptr<Parser> m_parser;
};

} // namespace corvane
