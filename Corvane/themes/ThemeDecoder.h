// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/themes/DirectoryEntries.h"
#include "Corvane/themes/JSONDecodingError.h"
#include "Corvane/themes/RegularFile.h"
#include "Corvane/themes/Theme.h"

#include <QUrl>

#include <cstddef>
#include <functional>
#include <memory>

namespace corvane {

class ThemeJsonParser;

// Reads one theme file whole and decodes it. Keeps one parser for every file it decodes, so one
// decoder must not be used by two threads at once.
class ThemeDecoder {
public:
    // The largest theme file read; a larger one fails without being read, so a hostile repository
    // cannot make the module allocate without bound.
    static constexpr std::size_t maximumFileSize = 4 * 1024 * 1024;

    ThemeDecoder();
    ~ThemeDecoder();

    // Only a regular file (after following links) is read: a named pipe or socket named like a theme
    // fails at once instead of blocking the reading.
    Result<Theme, JSONDecodingError> decodeTheme(const QUrl& file);
    // The same for a file a directory listing found, opened relative to that directory (open as
    // `directoryDescriptor`). `fileURL` gives the file's URL, which only a failure's text needs.
    Result<Theme, JSONDecodingError> decodeListedTheme(int directoryDescriptor, const DirectoryEntries::Entry& entry,
                                                       const std::function<QUrl()>& fileURL);

private:
    Result<Theme, JSONDecodingError> decode(Result<RegularFile, TextError> opened, const std::function<QUrl()>& fileURL);

    std::unique_ptr<ThemeJsonParser> m_parser; // made on first use
    // The bytes of the file being decoded; kept between files so reading allocates nothing.
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
};

} // namespace corvane
