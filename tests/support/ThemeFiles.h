// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace corvane::test {

// The JSON of a theme file with the four keys the module reads, and a little extra content as real
// theme files carry.
QByteArray themeJson(const QString& name, const QString& style, const QStringList& authors, const QString& version);

// Writes a theme file into a directory (created if missing); returns its path.
QString writeTheme(const QString& directory, const QString& fileName, const QString& name, const QString& style,
                   const QStringList& authors, const QString& version);

// Writes raw bytes to a file in a directory (created if missing); returns its path.
QString writeFile(const QString& directory, const QString& fileName, const QByteArray& content);

QByteArray readFile(const QString& path);

// A file named by the system's bytes, for names that are not UTF-8 (Qt would write U+FFFD instead).
void writeFileNamed(const QString& directory, const QByteArray& encodedName, const QByteArray& content);
// The names in a directory as the system stores them, sorted, without "." and "..".
QList<QByteArray> encodedNames(const QString& directory);

} // namespace corvane::test
