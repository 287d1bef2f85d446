// SPDX-License-Identifier: MIT
#include "ThemeFiles.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

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

void writeFileNamed(const QString& directory, const QByteArray& encodedName, const QByteArray& content)
{
    QDir().mkpath(directory);
    const QByteArray path = QFile::encodeName(directory) + '/' + encodedName;
    const int descriptor = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (descriptor < 0 || ::write(descriptor, content.constData(), std::size_t(content.size())) != content.size())
        qFatal("cannot write test file %s", path.constData());
    ::close(descriptor);
}

QList<QByteArray> encodedNames(const QString& directory)
{
    QList<QByteArray> names;
    if (DIR* listing = ::opendir(QFile::encodeName(directory).constData())) {
        while (const dirent* entry = ::readdir(listing)) {
            if (qstrcmp(entry->d_name, ".") != 0 && qstrcmp(entry->d_name, "..") != 0)
                names << QByteArray(entry->d_name);
        }
        ::closedir(listing);
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace corvane::test
