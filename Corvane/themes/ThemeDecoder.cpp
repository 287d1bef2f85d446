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
    return decodeTheme(file, file.toLocalFile());
}

Result<Theme, JSONDecodingError> ThemeDecoder::decodeTheme(const QUrl& file, const QString& localPath)
{
    const auto readingFailed = [&file](TextError error) {
        return std::unexpected(JSONDecodingError(JSONDecodingError::DataReadingFailed{file, std::move(error)}));
    };

    auto opened = RegularFile::open(localPath);
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
        return std::unexpected(JSONDecodingError(JSONDecodingError::JSONDecodingFailed{file, std::move(theme.error())}));
    return std::move(*theme);
}

} // namespace corvane
