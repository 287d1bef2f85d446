// SPDX-License-Identifier: MIT
#include "Corvane/themes/ThemeReader.h"

#include "Corvane/themes/Descriptor.h"
#include "Corvane/themes/FileNameEncoding.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <optional>
#include <thread>
#include <cstdint>
#include <vector>

#include <fcntl.h>

namespace corvane {

ThemeReader::ThemeReader(std::shared_ptr<ThemeDecoder> themeDecoder,
                         std::shared_ptr<const DirectoryLister> directoryLister)
    : m_themeDecoder(std::move(themeDecoder)), m_directoryLister(std::move(directoryLister))
{
}

namespace {

// A UTF-16 unit's place in code point order: QString orders units, which puts a character beyond
// U+FFFF (a surrogate pair, D800-DFFF) before U+E000-U+FFFF. Shifting the surrogates after
// U+FFFF and U+E000-U+FFFF down by 0x800 keeps every rank within 16 bits.
std::uint16_t codePointRank(QChar unit)
{
    const char16_t value = unit.unicode();
    if (value >= 0xE000)
        return static_cast<std::uint16_t>(value - 0x800);
    if (value >= 0xD800)
        return static_cast<std::uint16_t>(value + 0x2000);
    return value;
}

} // namespace

bool ThemeReader::isThemeFileName(QStringView fileName)
{
    return fileName.endsWith(u".theme.json");
}

bool ThemeReader::isThemeFileName(QByteArrayView encodedFileName)
{
    // The ending is ASCII, which every encoding of file names the system uses spells the same.
    return encodedFileName.endsWith(".theme.json");
}

bool ThemeReader::nameOrdersBefore(QStringView left, QStringView right)
{
    // Only the first differing unit decides, so ranking just that pair is enough.
    const auto [mine, theirs] = std::mismatch(left.cbegin(), left.cend(), right.cbegin(), right.cend());
    if (theirs == right.cend())
        return false; // equal, or right is a prefix of left
    if (mine == left.cend())
        return true; // left is a proper prefix of right
    return codePointRank(*mine) < codePointRank(*theirs);
}

namespace {

// Below this many theme files a second thread costs more than it saves.
constexpr std::size_t filesWorthASecondThread = 512;
// Small enough that a thread that finds the other one behind takes over most of its work; large
// enough that taking a batch costs nothing next to decoding it.
constexpr std::size_t filesPerBatch = 128;

// Decodes theme files in listing order, as one thread of a reading does: stops at the first that
// fails, or once `giveUp` says its results will not be used.
struct ThemeFileRange {
    const std::vector<DirectoryEntries::Entry>* files;
    std::size_t begin, end;
    const QString* prefix;
    const QByteArray* encodedPrefix;
    int listed;

    template<typename GiveUp>
    std::optional<ThemeDecodingError> decode(ThemeDecoder& decoder, QList<StoredTheme>& themes, GiveUp giveUp) const
    {
        QByteArray fullName;
        themes.reserve(qsizetype(end - begin));
        for (std::size_t index = begin; index < end && !giveUp(); ++index) {
            DirectoryEntries::Entry entry = (*files)[index];
            const QByteArrayView name = entry.encodedName;
            int base = listed;
            if (base < 0) {
                base = AT_FDCWD;
                if (!entry.encodedName.startsWith('/')) {
                    fullName = *encodedPrefix + entry.encodedName.toByteArray();
                    entry.encodedName = fullName;
                }
            }
            auto theme = decoder.decodeListedTheme(base, entry, [&] {
                return QUrl::fromLocalFile(DirectoryEntries::localPath(*prefix, name));
            });
            if (!theme)
                return ThemeDecodingError{std::move(theme.error())};
            themes.append(StoredTheme{DirectoryEntries::localPath(*prefix, name), std::move(*theme)});
        }
        return std::nullopt;
    }
};

struct DecodedBatch {
    QList<StoredTheme> themes;
    std::optional<ThemeDecodingError> failure;
};

} // namespace

Result<QList<StoredTheme>, ThemeDecodingError> ThemeReader::readThemes(const QUrl& directory) const
{
    auto entries = m_directoryLister->entriesInDirectory(directory);
    if (!entries)
        return std::unexpected(ThemeDecodingError{std::move(entries.error())});

    const QString prefix = DirectoryEntries::pathPrefix(directory);
    // Files are opened relative to the listed directory, so the system resolves one name per file
    // instead of the whole path. Should the directory have gone since the listing, its files fail to
    // open by their full paths, each with the reason the system gives.
    const QByteArray encodedPrefix = FileNameEncoding::encodeOrEmpty(prefix);
    const Descriptor listed(::open(encodedPrefix.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));

    std::vector<DirectoryEntries::Entry> files;
    files.reserve(std::size_t(entries->size()));
    for (qsizetype index = 0; index < entries->size(); ++index) {
        if (isThemeFileName((*entries)[index].encodedName))
            files.push_back((*entries)[index]);
    }

    // A large directory is decoded on two cores, this thread and a helper with a decoder of its own
    // taking batches of files in listing order from a shared counter: should one of them wait for a
    // core on a busy machine, the other takes the rest, so neither waits for more than one batch of
    // the other. The result is the one reading in listing order gives: the failure of the first
    // batch that fails (every batch before it was decoded whole), else every theme in listing order
    // (which the stable sort keeps for equal names). A batch after a failed one is not needed.
    const std::size_t batchCount = (files.size() + filesPerBatch - 1) / filesPerBatch;
    std::vector<DecodedBatch> batches(batchCount);
    std::atomic<std::size_t> nextBatch{0};
    std::atomic<std::size_t> firstFailedBatch{batchCount};
    const auto decodeBatches = [&](ThemeDecoder& decoder) {
        for (std::size_t batch = nextBatch++; batch < batchCount; batch = nextBatch++) {
            if (batch > firstFailedBatch.load())
                return;
            const ThemeFileRange range{&files, batch * filesPerBatch, std::min(files.size(), (batch + 1) * filesPerBatch),
                                       &prefix, &encodedPrefix, listed.get()};
            batches[batch].failure = range.decode(decoder, batches[batch].themes, [&] { return batch > firstFailedBatch.load(); });
            if (batches[batch].failure) {
                std::size_t failed = firstFailedBatch.load();
                while (batch < failed && !firstFailedBatch.compare_exchange_weak(failed, batch)) {
                }
            }
        }
    };
    std::thread helper;
    if (files.size() >= filesWorthASecondThread && std::thread::hardware_concurrency() > 1) {
        if (!m_helperDecoder)
            m_helperDecoder = std::make_unique<ThemeDecoder>();
        helper = std::thread([&] { decodeBatches(*m_helperDecoder); });
    }
    decodeBatches(*m_themeDecoder);
    if (helper.joinable())
        helper.join();
    QList<StoredTheme> themes;
    themes.reserve(qsizetype(files.size()));
    for (DecodedBatch& batch : batches) {
        if (batch.failure)
            return std::unexpected(std::move(*batch.failure));
        std::move(batch.themes.begin(), batch.themes.end(), std::back_inserter(themes));
    }
    return sortedByName(std::move(themes));
}

QList<StoredTheme> ThemeReader::sortedByName(QList<StoredTheme> themes)
{
    // Sorting small keys and moving each theme once is cheaper than moving themes around. A key
    // carries the first twelve units of its name, ranked in code point order, packed into three numbers:
    // most comparisons end there, without reaching for the name's characters elsewhere in memory.
    struct Key {
        std::uint64_t prefix[3];
        QStringView name;
        qsizetype index;
    };
    std::vector<Key> keys;
    keys.reserve(static_cast<std::size_t>(themes.size()));
    // Without any unit from U+D800 on, UTF-16 order is code point order and QString's own
    // (vectorised) comparison can be used for names with equal prefixes.
    bool beyondSurrogates = false;
    for (qsizetype index = 0; index < themes.size(); ++index) {
        const QString& name = themes[index].theme.identifier.canonicalName();
        Key key{{0, 0, 0}, name, index};
        for (qsizetype unit = 0; unit < std::min<qsizetype>(name.size(), 12); ++unit)
            key.prefix[unit / 4] |= std::uint64_t(codePointRank(name[unit])) << (48 - 16 * (unit % 4));
        keys.push_back(key);
        if (!beyondSurrogates)
            beyondSurrogates = std::any_of(name.cbegin(), name.cend(), [](QChar unit) { return unit.unicode() >= 0xD800; });
    }
    const auto prefixOrder = [](const Key& left, const Key& right) {
        if (left.prefix[0] != right.prefix[0])
            return left.prefix[0] < right.prefix[0] ? -1 : 1;
        if (left.prefix[1] != right.prefix[1])
            return left.prefix[1] < right.prefix[1] ? -1 : 1;
        if (left.prefix[2] != right.prefix[2])
            return left.prefix[2] < right.prefix[2] ? -1 : 1;
        return 0;
    };
    // Equal names keep their listing order: the dark and the light variant of one theme stay as listed.
    if (beyondSurrogates) {
        std::stable_sort(keys.begin(), keys.end(), [&](const Key& left, const Key& right) {
            const int order = prefixOrder(left, right);
            return order != 0 ? order < 0 : nameOrdersBefore(left.name, right.name);
        });
    } else {
        std::stable_sort(keys.begin(), keys.end(), [&](const Key& left, const Key& right) {
            const int order = prefixOrder(left, right);
            return order != 0 ? order < 0 : QtPrivate::compareStrings(left.name, right.name, Qt::CaseSensitive) < 0;
        });
    }
    QList<StoredTheme> sorted;
    sorted.reserve(themes.size());
    for (const Key& key : keys)
        sorted.append(std::move(themes[key.index]));
    return sorted;
}


} // namespace corvane
