#include "Corvane/sources/UntrustedThemeFiles.h"

#include "Corvane/module/Localized.h"

#include <QDir>
#include <QFileInfo>

namespace corvane {

QString UntrustedThemeFiles::linkedFileText(const QString& path)
{
    //% "The theme file '%@' is a symbolic link. Links from the theme repository are never read."
    const QString format = localizedString(QT_TRID_NOOP("corvane.remote-themes.linked-file"),
                                           "The theme file '%@' is a symbolic link. Links from the theme repository are never read.");
    return fillPlaceholders(format, {path});
}

QString UntrustedThemeFiles::linkedDirectoryText(const QString& path)
{
    //% "The theme directory '%@' is a symbolic link. Links from the theme repository are never read."
    const QString format = localizedString(QT_TRID_NOOP("corvane.remote-themes.linked-directory"),
                                           "The theme directory '%@' is a symbolic link. Links from the theme repository are never read.");
    return fillPlaceholders(format, {path});
}

QString UntrustedThemeFiles::irregularFileText(const QString& path)
{
    //% "The theme file '%@' is not a regular file."
    const QString format = localizedString(QT_TRID_NOOP("corvane.remote-themes.irregular-file"),
                                           "The theme file '%@' is not a regular file.");
    return fillPlaceholders(format, {path});
}

std::optional<TextError> UntrustedThemeFiles::refusal(const QString& cloneDirectory, const QString& themesDirectory,
                                                      const QStringList& linksAtHead)
{
    const QFileInfo themes(themesDirectory);
    if (themes.isSymLink())
        return TextError{linkedDirectoryText(themesDirectory)};
    for (const QString& link : linksAtHead) {
        const QString path = QDir(cloneDirectory).filePath(link);
        if (QDir::cleanPath(path) == QDir::cleanPath(themesDirectory))
            return TextError{linkedDirectoryText(path)};
        return TextError{linkedFileText(path)};
    }
    if (!themes.isDir())
        return std::nullopt; // the reader names a missing directory in its own words

    // Shallow, links not followed; System brings FIFOs, sockets, devices and dangling links along. When
    // several entries are refused, the first by name is reported, whatever order the listing has.
    const QFileInfoList entries = QDir(themesDirectory)
                                      .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System
                                                         | QDir::NoDotAndDotDot,
                                                     QDir::NoSort);
    const QFileInfo* first = nullptr;
    for (const QFileInfo& entry : entries) {
        if (!entry.fileName().endsWith(QLatin1StringView(".theme.json")))
            continue;
        const bool refused = entry.isSymLink() || (!entry.isDir() && !entry.isFile());
        if (refused && (!first || entry.fileName() < first->fileName()))
            first = &entry;
    }
    if (first)
        return TextError{first->isSymLink() ? linkedFileText(first->filePath()) : irregularFileText(first->filePath())};
    return std::nullopt;
}

} // namespace corvane
