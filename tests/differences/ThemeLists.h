#pragma once

#include "Corvane/differences/ThemeDifference.h"
#include "Corvane/themes/StoredTheme.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace corvane::test {

// Where the comparison tests pretend the two sides lie; nothing is read from there.
inline const QString remoteDirectory = QStringLiteral("/clone/Themes");
inline const QString installedDirectory = QStringLiteral("/home/user/themes");

// A theme written compactly as "file|name|style|version" with an optional "|author,author".
StoredTheme storedTheme(const QString& directory, const QString& compact);
QList<RemoteTheme> remoteThemes(const QStringList& compact);
QList<LocalTheme> localThemes(const QStringList& compact);

// One difference as a line a test can compare and print, with "R/" for the clone's theme directory
// and "I/" for the installed-themes directory:
//   "new Solar dark 1.2.0 (Ann, Bo) R/solar.theme.json -> I/solar.theme.json"
//   "update Solar dark 1.0.0 -> 2.0.0 (Ann) R/solar.theme.json -> I/mine.theme.json"
QString describe(const ThemeDifference& difference);
QStringList describe(const QList<ThemeDifference>& differences);

} // namespace corvane::test
