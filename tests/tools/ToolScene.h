#pragma once

#include "GitDaemon.h"
#include "GitRepositoryFixture.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace corvane::test {

// What one run of the built command-line tool gave.
struct ToolRun {
    int exitCode = -1;
    QString out;
    QString err;
    QStringList outLines() const;
};

// Runs the corvane tool as its own process, with this process's environment (XDG_DATA_HOME included).
ToolRun runCorvane(const QStringList& arguments);

// A theme repository, the tool's clone of it and an installed-themes directory, all in one temporary
// directory; the remote is reached over file:// or, through a real git daemon, over git://.
class ToolScene {
public:
    explicit ToolScene(bool overGitProtocol);

    bool isReady() const { return m_daemon == nullptr || m_daemon->isRunning(); }
    GitRepositoryFixture& remote() { return m_remote; }
    QString remoteURL() const;
    QString clonePath() const { return m_directory.filePath(QStringLiteral("clone")); }
    QString installedPath() const { return m_directory.filePath(QStringLiteral("installed")); }
    QString path(const QString& relative) const { return m_directory.filePath(relative); }

    // The three location options, then the rest.
    QStringList locations() const;

    // The repository most tests start from:
    //   new      Aurora (light, Ann and Bo, 1.0.0)        in aurora.theme.json
    //   update   Café (light, 2.0.0 -> 3.0.0)             installed as cafe-old.theme.json, decomposed
    //   update   Solar (dark, Cy, 1.5 -> 2.0.0)           remote solar-dark.theme.json, installed my-solar.theme.json
    //   current  Lunar (dark, 1.0.0)                      on both sides
    void publishStandardThemes();

private:
    QTemporaryDir m_directory;
    GitRepositoryFixture m_remote;
    std::unique_ptr<GitDaemon> m_daemon;
};

// "Café" with é as one letter, and as e plus a combining acute accent.
QString composedCafe();
QString decomposedCafe();

} // namespace corvane::test
