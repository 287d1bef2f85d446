// SPDX-License-Identifier: MIT
#include "ThemeFiles.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace corvane::test {

QByteArray themeJson(const QString& name, const QString& style, const QStringList& authors, const QString& version)
{
    QJsonArray authorObjects;
    for (const QString& author : authors)
        authorObjects.append(QJsonObject{{QStringLiteral("name"), author}});
    const QJsonObject theme{
        {QStringLiteral("name"), name},
        {QStringLiteral("style"), style},
        {QStringLiteral("author"), authorObjects},
        {QStringLiteral("version"), version},
        {QStringLiteral("editor"), QJsonObject{{QStringLiteral("background"), QStringLiteral("#1e1e2e")},
                                               {QStringLiteral("foreground"), QStringLiteral("#cdd6f4")}}},
    };
    return QJsonDocument(theme).toJson();
}

QString writeFile(const QString& directory, const QString& fileName, const QByteArray& content)
{
    QDir().mkpath(directory);
    const QString path = QDir(directory).filePath(fileName);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qFatal("cannot write test file %s", qPrintable(path));
    file.write(content);
    return path;
}

QString writeTheme(const QString& directory, const QString& fileName, const QString& name, const QString& style,
                   const QStringList& authors, const QString& version)
{
    return writeFile(directory, fileName, themeJson(name, style, authors, version));
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

} // namespace corvane::test
