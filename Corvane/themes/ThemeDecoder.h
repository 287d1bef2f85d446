#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/themes/JSONDecodingError.h"
#include "Corvane/themes/Theme.h"

#include <QUrl>

#include <memory>

namespace corvane {

class ThemeJsonParser;

// Reads one theme file whole and decodes it. Keeps one parser for every file it decodes, so one
// decoder must not be used by two threads at once.
class ThemeDecoder {
public:
    ThemeDecoder();
    ~ThemeDecoder();

    Result<Theme, JSONDecodingError> decodeTheme(const QUrl& file);

private:
    std::unique_ptr<ThemeJsonParser> m_parser; // made on first use
};

} // namespace corvane
