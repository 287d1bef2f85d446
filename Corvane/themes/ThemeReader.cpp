#include "Corvane/themes/ThemeReader.h"

#include <algorithm>

namespace corvane {

ThemeReader::ThemeReader(std::shared_ptr<ThemeDecoder> themeDecoder,
                         std::shared_ptr<const DirectoryLister> directoryLister)
    : m_themeDecoder(std::move(themeDecoder)), m_directoryLister(std::move(directoryLister))
{
}

bool ThemeReader::isThemeFileName(QStringView fileName)
{
    return fileName.endsWith(u".theme.json");
}

bool ThemeReader::nameOrdersBefore(const QString& left, const QString& right)
{
    // QString orders UTF-16 code units, which puts a character beyond U+FFFF (a surrogate pair,
    // D800-DFFF) before U+E000-U+FFFF. Only the first differing unit decides, so shifting just that
    // pair of units into code point order is enough.
    const auto [mine, theirs] = std::mismatch(left.cbegin(), left.cend(), right.cbegin(), right.cend());
    if (theirs == right.cend())
        return false; // equal, or right is a prefix of left
    if (mine == left.cend())
        return true; // left is a proper prefix of right
    const auto rank = [](QChar unit) {
        const char16_t value = unit.unicode();
        if (value >= 0xE000)
            return static_cast<int>(value) - 0x800;
        if (value >= 0xD800)
            return static_cast<int>(value) + 0x2000;
        return static_cast<int>(value);
    };
    return rank(*mine) < rank(*theirs);
}

Result<QList<StoredTheme>, ThemeDecodingError> ThemeReader::readThemes(const QUrl& directory) const
{
    auto files = m_directoryLister->filesInDirectory(directory);
    if (!files)
        return std::unexpected(ThemeDecodingError{std::move(files.error())});

    QList<StoredTheme> themes;
    themes.reserve(files->size());
    for (const QUrl& file : std::as_const(*files)) {
        // The path ends with the file name, and is cheaper to get than the name on its own.
        if (!isThemeFileName(file.path()))
            continue;
        auto theme = m_themeDecoder->decodeTheme(file);
        if (!theme)
            return std::unexpected(ThemeDecodingError{std::move(theme.error())});
        themes.append(StoredTheme{file, std::move(*theme)});
    }

    // Stable: the dark and the light variant of one name keep the order their files were listed in.
    std::stable_sort(themes.begin(), themes.end(), [](const StoredTheme& left, const StoredTheme& right) {
        return nameOrdersBefore(left.theme.identifier.canonicalName(), right.theme.identifier.canonicalName());
    });
    return themes;
}

} // namespace corvane
