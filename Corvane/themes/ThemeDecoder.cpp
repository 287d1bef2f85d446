// SPDX-License-Identifier: MIT
#include "Corvane/themes/ThemeDecoder.h"

#include "Corvane/themes/RegularFile.h"
#include "Corvane/themes/ThemeJsonParser.h"

namespace corvane {

namespace {
constexpr std::size_t retainedBufferSize = 256 * 1024;
} // namespace

ThemeDecoder::ThemeDecoder() = default;
ThemeDecoder::~ThemeDecoder() = default;

Result<Theme, JSONDecodingError> ThemeDecoder::decodeTheme(const QUrl& file)
{
    return decode(RegularFile::open(file.toLocalFile()), [&file] { return file; });
}

Result<Theme, JSONDecodingError> ThemeDecoder::decodeListedTheme(int directoryDescriptor,
                                                                 const DirectoryEntries::Entry& entry,
                                                                 const std::function<QUrl()>& fileURL)
{
    return decode(RegularFile::openAt(directoryDescriptor, entry.encodedName.data(), entry.listedAsRegularFile),
                  fileURL);
}

Result<Theme, JSONDecodingError> ThemeDecoder::decode(Result<RegularFile, TextError> opened,
                                                      const std::function<QUrl()>& fileURL)
{
    const auto readingFailed = [&fileURL](TextError error) {
        return std::unexpected(JSONDecodingError(JSONDecodingError::DataReadingFailed{fileURL(), std::move(error)}));
    };

    if (!opened)
        return readingFailed(std::move(opened.error()));
    auto length = opened->readAll(m_buffer, m_capacity, ThemeJsonParser::padding, maximumFileSize);
    if (!length)
        return readingFailed(std::move(length.error()));

    if (!m_parser)
        m_parser = std::make_unique<ThemeJsonParser>();
    auto theme = m_parser->decodePadded(m_buffer.get(), *length);
    // Theme files are a few kilobytes; the buffer of a rare large one is not kept.
    if (m_capacity > retainedBufferSize) {
        m_buffer.reset();
        m_capacity = 0;
    }
    if (!theme)
        return std::unexpected(JSONDecodingError(JSONDecodingError::JSONDecodingFailed{fileURL(), std::move(theme.error())}));
    return std::move(*theme);
}

} // namespace corvane
