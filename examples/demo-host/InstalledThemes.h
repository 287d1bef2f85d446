// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

// What the demo host knows of its installed themes: it reads the files itself, as any host does.
struct InstalledTheme {
    QString fileName;
    QString name;
    QString style;
    QString version;
    QString authors;
};

// Every readable "*.theme.json" of the directory, sorted by name; unreadable files are skipped (the
// updater window is where broken files are reported).
QList<InstalledTheme> readInstalledThemes(const QString& directory);
