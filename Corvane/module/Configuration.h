// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QUrl>

namespace corvane {

// The three locations a host gives the module: the curated remote repository of themes, the
// directory of the module's own clone of it, and the host's directory of installed themes.
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

private:
    QUrl m_remoteThemeRepositoryURL;
    QUrl m_localThemeRepositoryURL;
    QUrl m_installedThemeDirectory;
};

} // namespace corvane
