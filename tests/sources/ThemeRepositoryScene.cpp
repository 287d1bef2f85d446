#include "ThemeRepositoryScene.h"

#include "ThemeFiles.h"

#include <QDir>

namespace corvane::test {

ThemeRepositoryScene::ThemeRepositoryScene(Transport transport) : m_transport(transport)
{
    m_remote = std::make_unique<GitRepositoryFixture>(m_root.filePath(QStringLiteral("served/themes")));
    writeTheme(m_remote->themesDirectory(), QStringLiteral("Dusk.theme.json"), QStringLiteral("Dusk"),
               QStringLiteral("dark"), {QStringLiteral("Ada")}, QStringLiteral("1.0.0"));
    writeFile(m_remote->path(), QStringLiteral("README.md"), "Curated themes\n");
    m_remote->commitAll(QStringLiteral("First themes"));
    if (transport == Transport::git)
        m_daemon = std::make_unique<GitDaemon>(m_root.filePath(QStringLiteral("served")));
}

bool ThemeRepositoryScene::isReady() const
{
    return m_root.isValid() && (m_transport == Transport::file || m_daemon->isRunning());
}

QUrl ThemeRepositoryScene::remoteUrl() const
{
    if (m_transport == Transport::git)
        return m_daemon->url(QStringLiteral("themes"));
    return m_remote->fileUrl();
}

QString ThemeRepositoryScene::commitTheme(const QString& fileName, const QString& name, const QString& version)
{
    writeTheme(m_remote->themesDirectory(), fileName, name, QStringLiteral("dark"), {QStringLiteral("Ada")}, version);
    return m_remote->commitAll(QStringLiteral("Theme %1 %2").arg(name, version));
}

void ThemeRepositoryScene::takeRemoteAway()
{
    QDir(m_root.path()).rename(QStringLiteral("served/themes"), QStringLiteral("away"));
}

void ThemeRepositoryScene::bringRemoteBack()
{
    QDir(m_root.path()).rename(QStringLiteral("away"), QStringLiteral("served/themes"));
}

QString ThemeRepositoryScene::cloneRevision(const QString& revision) const
{
    return runGit(clonePath(), {QStringLiteral("rev-parse"), revision});
}

} // namespace corvane::test
