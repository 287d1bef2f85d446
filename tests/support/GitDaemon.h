// SPDX-License-Identifier: MIT
#pragma once

#include "ServerProcess.h"

#include <QString>
#include <QUrl>

namespace corvane::test {

// A real "git daemon" serving every repository below a directory over git:// on 127.0.0.1, on a free
// port, for as long as the object lives.
class GitDaemon {
public:
    explicit GitDaemon(const QString& basePath);

    GitDaemon(const GitDaemon&) = delete;
    GitDaemon& operator=(const GitDaemon&) = delete;

    bool isRunning() const { return m_server.port() != 0; }
    quint16 port() const { return m_server.port(); }
    // git://127.0.0.1:PORT/<relative path>
    QUrl url(const QString& relativePath) const;

    void stop() { m_server.stop(); }

private:
    ServerProcess m_server;
};

} // namespace corvane::test
