#include "ThemeLists.h"

#include <QDir>

namespace corvane::test {
namespace {

QString shortPath(const QUrl& url)
{
    const QString path = url.toLocalFile();
    if (path.startsWith(remoteDirectory + u'/'))
        return QStringLiteral("R/") + path.mid(remoteDirectory.size() + 1);
    if (path.startsWith(installedDirectory + u'/'))
        return QStringLiteral("I/") + path.mid(installedDirectory.size() + 1);
    return url.toString();
}

QString styleWord(Theme::Style style)
{
    return style == Theme::Style::dark ? QStringLiteral("dark") : QStringLiteral("light");
}

} // namespace

StoredTheme storedTheme(const QString& directory, const QString& compact)
{
    const QStringList fields = compact.split(u'|');
    Q_ASSERT(fields.size() == 4 || fields.size() == 5);
    const Theme::Style style = fields[2] == u"dark" ? Theme::Style::dark : Theme::Style::light;
    const QStringList authors = fields.size() == 5 ? fields[4].split(u',') : QStringList{};
    return StoredTheme{QUrl::fromLocalFile(directory + u'/' + fields[0]),
                       Theme{Theme::Identifier(fields[1], style), authors, *Version::fromString(fields[3])}};
}

QList<RemoteTheme> remoteThemes(const QStringList& compact)
{
    QList<RemoteTheme> themes;
    for (const QString& theme : compact)
        themes.append(RemoteTheme{storedTheme(remoteDirectory, theme)});
    return themes;
}

QList<LocalTheme> localThemes(const QStringList& compact)
{
    QList<LocalTheme> themes;
    for (const QString& theme : compact)
        themes.append(LocalTheme{storedTheme(installedDirectory, theme)});
    return themes;
}

QString describe(const ThemeDifference& difference)
{
    if (const auto* added = std::get_if<NewTheme>(&difference))
        return QStringLiteral("new %1 %2 %3 (%4) %5 -> %6")
            .arg(added->name, styleWord(added->style), added->version.toString(), added->authors.join(QStringLiteral(", ")),
                 shortPath(added->copyCommand.sourceURL), shortPath(added->copyCommand.destinationURL));
    const auto& update = std::get<UpdatedTheme>(difference);
    return QStringLiteral("update %1 %2 %3 -> %4 (%5) %6 -> %7")
        .arg(update.identifier.name(), styleWord(update.identifier.style()), update.versionChange.from.toString(),
             update.versionChange.to.toString(), update.authors.join(QStringLiteral(", ")),
             shortPath(update.copyCommand.sourceURL), shortPath(update.copyCommand.destinationURL));
}

QStringList describe(const QList<ThemeDifference>& differences)
{
    QStringList lines;
    for (const ThemeDifference& difference : differences)
        lines.append(describe(difference));
    return lines;
}

} // namespace corvane::test
