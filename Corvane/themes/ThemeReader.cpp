#include "Corvane/themes/ThemeReader.h"

#include <algorithm>
#include <vector>

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
        // The path ends with the file name, and is needed for opening the file anyway.
        const QString path = file.isLocalFile() ? file.toLocalFile() : file.path();
        if (!isThemeFileName(path))
            continue;
        auto theme = m_themeDecoder->decodeTheme(file, path);
        if (!theme)
            return std::unexpected(ThemeDecodingError{std::move(theme.error())});
        themes.append(StoredTheme{file, std::move(*theme)});
    }

    return sortedByName(std::move(themes));
}

QList<StoredTheme> ThemeReader::sortedByName(QList<StoredTheme> themes)
{
    // Sorting small keys and moving each theme once is cheaper than moving themes around.
    struct Key {
        const QString* name;
        qsizetype index;
    };
    std::vector<Key> keys;
    keys.reserve(static_cast<std::size_t>(themes.size()));
    // Without any unit from U+D800 on, UTF-16 order is code point order and QString's own
    // (vectorised) comparison can be used.
    bool beyondSurrogates = false;
    for (qsizetype index = 0; index < themes.size(); ++index) {
        const QString& name = themes[index].theme.identifier.canonicalName();
        keys.push_back(Key{&name, index});
        if (!beyondSurrogates)
            beyondSurrogates = std::any_of(name.cbegin(), name.cend(), [](QChar unit) { return unit.unicode() >= 0xD800; });
    }
    // Equal names keep their listing order: the dark and the light variant of one theme stay as listed.
    if (beyondSurrogates) {
        std::stable_sort(keys.begin(), keys.end(), [](const Key& left, const Key& right) {
            return nameOrdersBefore(*left.name, *right.name);
        });
    } else {
        std::stable_sort(keys.begin(), keys.end(), [](const Key& left, const Key& right) {
            return QtPrivate::compareStrings(*left.name, *right.name, Qt::CaseSensitive) < 0;
        });
    }
    QList<StoredTheme> sorted;
    sorted.reserve(themes.size());
    for (const Key& key : keys)
        sorted.append(std::move(themes[key.index]));
    return sorted;
}


} // namespace corvane
