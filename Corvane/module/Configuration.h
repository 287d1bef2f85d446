// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"
#include "Corvane/module/RemoteAccess.h"

#include <QString>

#include <QUrl>

namespace corvane {

// The three locations a host gives the module: the curated remote repository of themes, the
// directory of the module's own clone of it, and the host's directory of installed themes. Optionally,
// the branch the clone follows ("master" unless set) and how the remote is reached (credentials, a
// stricter certificate check). A user:password in the remote URL is used to authenticate but never
// stored in the clone.
class CORVANE_EXPORT Configuration {
public:
    Configuration(QUrl remoteThemeRepositoryURL, QUrl localThemeRepositoryURL, QUrl installedThemeDirectory)
        : m_remoteThemeRepositoryURL(std::move(remoteThemeRepositoryURL))
        , m_localThemeRepositoryURL(std::move(localThemeRepositoryURL))
        , m_installedThemeDirectory(std::move(installedThemeDirectory))
    {
    }

    const QUrl& remoteThemeRepositoryURL() const { return m_remoteThemeRepositoryURL; }
    const QUrl& localThemeRepositoryURL() const { return m_localThemeRepositoryURL; }
    const QUrl& installedThemeDirectory() const { return m_installedThemeDirectory; }

    // The remote's branch the clone is kept at, as "origin/<branch>".
    const QString& branch() const { return m_branch; }
    Configuration withBranch(QString branch) const
    {
        Configuration changed = *this;
        changed.m_branch = std::move(branch);
        return changed;
    }

    const RemoteAccess& remoteAccess() const { return m_remoteAccess; }
    Configuration withRemoteAccess(RemoteAccess access) const
    {
        Configuration changed = *this;
        changed.m_remoteAccess = std::move(access);
        return changed;
    }

private:
    QUrl m_remoteThemeRepositoryURL;
    QUrl m_localThemeRepositoryURL;
    QUrl m_installedThemeDirectory;
    QString m_branch = QStringLiteral("master");
    RemoteAccess m_remoteAccess;
};

} // namespace corvane
