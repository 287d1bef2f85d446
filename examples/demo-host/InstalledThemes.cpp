// SPDX-License-Identifier: MIT
#include "InstalledThemes.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

QList<InstalledTheme> readInstalledThemes(const QString& directory)
{
    QList<InstalledTheme> themes;
    const QStringList files = QDir(directory).entryList({QStringLiteral("*.theme.json")}, QDir::Files);
    for (const QString& fileName : files) {
        QFile file(QDir(directory).filePath(fileName));
        if (!file.open(QIODevice::ReadOnly) || file.size() > 4 * 1024 * 1024)
            continue;
        const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
        if (object.isEmpty())
            continue;
        QStringList authors;
        for (const QJsonValue& author : object.value(QStringLiteral("author")).toArray())
            authors << author.toObject().value(QStringLiteral("name")).toString();
        themes.append({fileName, object.value(QStringLiteral("name")).toString(),
                       object.value(QStringLiteral("style")).toString(),
                       object.value(QStringLiteral("version")).toString(), authors.join(QStringLiteral(", "))});
    }
    std::sort(themes.begin(), themes.end(),
              [](const InstalledTheme& a, const InstalledTheme& b) { return a.name.localeAwareCompare(b.name) < 0; });
    return themes;
}
