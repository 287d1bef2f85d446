// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Result.h"
#include "Corvane/themes/DirectoryLister.h"
#include "Corvane/themes/StoredTheme.h"
#include "Corvane/themes/ThemeDecoder.h"
#include "Corvane/themes/ThemeDecodingError.h"

#include <QList>
#include <QUrl>

#include <memory>

namespace corvane {

// Reads every theme file (name ending in ".theme.json") of one directory, sorted by theme name.
// One broken file fails the whole reading. Not for two threads at once (its decoders are not).
class ThemeReader {
public:
    ThemeReader(std::shared_ptr<ThemeDecoder> themeDecoder, std::shared_ptr<const DirectoryLister> directoryLister);

    Result<QList<StoredTheme>, ThemeDecodingError> readThemes(const QUrl& directory) const;

    // Whether a file of this name is a theme file: a plain, case-sensitive test of the name's end, so
    // "x.THEME.JSON" and "x.theme.json.bak" are not theme files and ".theme.json" is one.
    static bool isThemeFileName(QStringView fileName);
    static bool isThemeFileName(QByteArrayView encodedFileName);

    // The order of theme names (their composed forms): by Unicode code points, not UTF-16 units, so a
    // character beyond U+FFFF sorts after U+FFFD; no locale rules and no case folding ("Zen" before "alpha").
    static bool nameOrdersBefore(QStringView canonicalName, QStringView otherCanonicalName);

    // Themes in the order of their names (stable, so equal names keep their order).
    static QList<StoredTheme> sortedByName(QList<StoredTheme> themes);

private:
    std::shared_ptr<ThemeDecoder> m_themeDecoder;
    // Decodes the second half of a large directory on another core; made on first need.
    mutable std::unique_ptr<ThemeDecoder> m_helperDecoder;
    std::shared_ptr<const DirectoryLister> m_directoryLister;
};

} // namespace corvane
