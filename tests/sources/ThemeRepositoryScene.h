// SPDX-License-Identifier: MIT
#pragma once

#include "GitDaemon.h"
#include "GitRepositoryFixture.h"
#include "SmartHttpServer.h"
#include "ThemeFiles.h"

#include <QDir>
#include <QTemporaryDir>

#include <memory>

namespace corvane::test {

// A remote holding "Themes/Dusk.theme.json" and a README, reached over file://, through a real git
// daemon or through a real smart-http server, and the place of the module's clone, all in one temporary
// directory.
struct ThemeRepositoryScene {
    explicit ThemeRepositoryScene(bool overGit = false, bool overHttp = false)
    {
        writeTheme(remote.themesDirectory(), "Dusk.theme.json", "Dusk", "dark", {"Ada"}, "1.0.0");
        writeFile(remote.path(), "README.md", "Curated themes\n");
        remote.commitAll("First themes");
        if (overGit)
            daemon = std::make_unique<GitDaemon>(root.filePath("served"));
        if (overHttp)
            http = std::make_unique<SmartHttpServer>(root.filePath("served"));
    }

    QUrl remoteUrl() const { return http ? http->url("themes") : daemon ? daemon->url("themes") : remote.fileUrl(); }
    QString clonePath() const { return root.filePath("clone"); }
    QUrl cloneUrl() const { return QUrl::fromLocalFile(clonePath()); }
    QString cloneHead() const { return runGit(clonePath(), {"rev-parse", "HEAD"}); }
    bool cloneIsClean() const { return runGit(clonePath(), {"status", "--porcelain", "--untracked-files=no"}).isEmpty(); }
    QString commitTheme(const QString& name)
    {
        writeTheme(remote.themesDirectory(), name + ".theme.json", name, "dark", {"Ada"}, "1.0.0");
        return remote.commitAll("Theme " + name);
    }
    void moveRemote(bool away) { QDir(root.path()).rename(away ? "served/themes" : "away", away ? "away" : "served/themes"); }

    QTemporaryDir root;
    GitRepositoryFixture remote{root.filePath("served/themes")};
    std::unique_ptr<GitDaemon> daemon;
    std::unique_ptr<SmartHttpServer> http;
};

} // namespace corvane::test
