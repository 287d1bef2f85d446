#pragma once

#include "GitDaemon.h"
#include "GitRepositoryFixture.h"

#include <QTemporaryDir>
#include <QUrl>

#include <memory>

namespace corvane::test {

// A remote theme repository with a first commit, reached over file:// or git:// (a real git daemon),
// and the place of the module's clone, all in one temporary directory.
class ThemeRepositoryScene {
public:
    enum class Transport { file, git };

    explicit ThemeRepositoryScene(Transport transport = Transport::file);

    bool isReady() const;
    QString root() const { return m_root.path(); }
    GitRepositoryFixture& remote() { return *m_remote; }
    QUrl remoteUrl() const;
    QString clonePath() const { return m_root.filePath(QStringLiteral("clone")); }
    QUrl cloneUrl() const { return QUrl::fromLocalFile(clonePath()); }

    // Adds (or rewrites) a theme file in the remote's "Themes" and commits; returns the commit id.
    QString commitTheme(const QString& fileName, const QString& name, const QString& version);
    // Moves the remote away (and back), as a server that lost the repository would.
    void takeRemoteAway();
    void bringRemoteBack();

    // git rev-parse in the clone.
    QString cloneRevision(const QString& revision = QStringLiteral("HEAD")) const;

private:
    QTemporaryDir m_root;
    Transport m_transport;
    std::unique_ptr<GitRepositoryFixture> m_remote;
    std::unique_ptr<GitDaemon> m_daemon;
};

} // namespace corvane::test
