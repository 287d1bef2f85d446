// SPDX-License-Identifier: MIT
#pragma once

#include "GitDaemon.h"
#include "GitRepositoryFixture.h"
#include "SmartHttpServer.h"
#include "TlsFront.h"
#include "ThemeFiles.h"

#include <QDir>
#include <QTemporaryDir>

#include <git2.h>

#include <memory>

namespace corvane::test {

// How the scene's remote is reached.
enum class Served { file, git, http, https };

// A remote holding "Themes/Dusk.theme.json" and a README, reached over file://, through a real git
// daemon, or through a real smart-http server (behind TLS with a test certificate authority for
// https, wanting a user and password when given them), and the place of the module's clone, all in one
// temporary directory.
struct ThemeRepositoryScene {
    explicit ThemeRepositoryScene(Served served = Served::file, const QString& user = {}, const QString& password = {})
    {
        writeTheme(remote.themesDirectory(), "Dusk.theme.json", "Dusk", "dark", {"Ada"}, "1.0.0");
        writeFile(remote.path(), "README.md", "Curated themes\n");
        remote.commitAll("First themes");
        if (served == Served::git)
            daemon = std::make_unique<GitDaemon>(root.filePath("served"));
        if (served == Served::http || served == Served::https)
            http = std::make_unique<SmartHttpServer>(root.filePath("served"), user, password);
        if (served == Served::https) {
            tls = std::make_unique<TlsFront>(http->port());
            // The test process trusts the test authority only; the module itself sets nothing of libgit2's.
            git_libgit2_init();
            git_libgit2_opts(GIT_OPT_SET_SSL_CERT_LOCATIONS, tls->caFile().toUtf8().constData(), nullptr);
        }
    }

    QUrl remoteUrl() const
    {
        if (tls)
            return QUrl(QStringLiteral("https://127.0.0.1:%1/themes").arg(tls->port()));
        return http ? http->url("themes") : daemon ? daemon->url("themes") : remote.fileUrl();
    }
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
    std::unique_ptr<TlsFront> tls;
};

} // namespace corvane::test
