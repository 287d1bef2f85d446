// SPDX-License-Identifier: MIT
#include "GitDaemon.h"

namespace corvane::test {

GitDaemon::GitDaemon(const QString& basePath)
{
    m_server.start(QStringLiteral("git"), [&](quint16 port) {
        return QStringList{QStringLiteral("daemon"), QStringLiteral("--reuseaddr"), QStringLiteral("--export-all"),
                           QStringLiteral("--listen=127.0.0.1"), QStringLiteral("--port=%1").arg(port),
                           QStringLiteral("--base-path=%1").arg(basePath), basePath};
    });
}

QUrl GitDaemon::url(const QString& relativePath) const
{
    return QUrl(QStringLiteral("git://127.0.0.1:%1/%2").arg(port()).arg(relativePath));
}

} // namespace corvane::test
