// SPDX-License-Identifier: MIT
#include "Corvane/sources/UntrustedThemeFiles.h"

#include "Corvane/module/Localized.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <memory>
#include <string_view>

namespace corvane {

QString UntrustedThemeFiles::linkedFileText(const QString& path)
{
    //% "The theme file '%1' is a symbolic link. Links from the theme repository are never read."
    const QString format = localizedString(QT_TRID_NOOP("corvane.remote-themes.linked-file"),
                                           "The theme file '%1' is a symbolic link. Links from the theme repository are never read.");
    return fillPlaceholders(format, {path});
}

QString UntrustedThemeFiles::linkedDirectoryText(const QString& path)
{
    //% "The theme directory '%1' is a symbolic link. Links from the theme repository are never read."
    const QString format = localizedString(QT_TRID_NOOP("corvane.remote-themes.linked-directory"),
                                           "The theme directory '%1' is a symbolic link. Links from the theme repository are never read.");
    return fillPlaceholders(format, {path});
}

QString UntrustedThemeFiles::irregularFileText(const QString& path)
{
    //% "The theme file '%1' is not a regular file."
    const QString format = localizedString(QT_TRID_NOOP("corvane.remote-themes.irregular-file"),
                                           "The theme file '%1' is not a regular file.");
    return fillPlaceholders(format, {path});
}

QString UntrustedThemeFiles::oversizedFileText(const QString& path, std::size_t size, std::size_t limit)
{
    //% "The theme file '%1' has %2 bytes; a theme file may have at most %3 bytes. It was not checked out."
    const QString format = localizedCountedString(
        QT_TRID_N_NOOP("corvane.remote-themes.oversized-file"), double(size),
        "The theme file '%1' has %2 byte; a theme file may have at most %3 bytes. It was not checked out.",
        "The theme file '%1' has %2 bytes; a theme file may have at most %3 bytes. It was not checked out.");
    return fillPlaceholders(format, {path, localizedNumber(double(size)), localizedNumber(double(limit))});
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

    // Shallow, links not followed. The directory entries' own types answer for almost every file, so the
    // check costs one pass over the directory and no system call per theme file. When several entries
    // are refused, the first by name is reported, whatever order the listing has.
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(QFile::encodeName(themesDirectory).constData()),
                                                        closedir);
    if (!directory)
        return std::nullopt; // the reader reports a directory it cannot list in its own words
    const int directoryDescriptor = dirfd(directory.get());
    QByteArray firstRefused;
    bool firstIsLink = false;
    while (const dirent* entry = readdir(directory.get())) {
        const std::string_view name(entry->d_name);
        if (!name.ends_with(".theme.json"))
            continue;
        unsigned char type = entry->d_type;
        if (type == DT_UNKNOWN) {
            struct stat status;
            if (fstatat(directoryDescriptor, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
                continue; // gone since the listing: nothing to read, nothing to refuse
            type = S_ISLNK(status.st_mode) ? DT_LNK : S_ISREG(status.st_mode) ? DT_REG : S_ISDIR(status.st_mode) ? DT_DIR : DT_FIFO;
        }
        if (type == DT_REG || type == DT_DIR)
            continue;
        const QByteArray refused(entry->d_name, qsizetype(name.size()));
        if (firstRefused.isEmpty() || QFile::decodeName(refused) < QFile::decodeName(firstRefused)) {
            firstRefused = refused;
            firstIsLink = type == DT_LNK;
        }
    }
    if (!firstRefused.isEmpty()) {
        const QString path = QDir(themesDirectory).filePath(QFile::decodeName(firstRefused));
        return TextError{firstIsLink ? linkedFileText(path) : irregularFileText(path)};
    }
    return std::nullopt;
}

} // namespace corvane
