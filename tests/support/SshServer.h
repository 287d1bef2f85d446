// SPDX-License-Identifier: MIT
#pragma once

#include "ServerProcess.h"

#include <QString>
#include <QTemporaryDir>
#include <QUrl>

namespace corvane::test {

// A real sshd on 127.0.0.1 and a free port, run as the current user with a configuration of its own:
// it accepts the one client key it made (no passwords), so a test clones over ssh:// as a host does.
// Needs /usr/sbin/sshd (Debian's openssh-server).
class SshServer {
public:
    SshServer();

    SshServer(const SshServer&) = delete;
    SshServer& operator=(const SshServer&) = delete;

    bool isRunning() const { return port() != 0; }
    // Why it is not running, for the test's message.
    const QString& failure() const { return m_failure; }
    quint16 port() const { return m_server.port(); }
    // ssh://USER@127.0.0.1:PORT/ABSOLUTE_PATH
    QUrl url(const QString& absolutePath) const;
    static QString userName();

    // The client key the server accepts, and one it does not know (OpenSSH private keys, with .pub beside).
    QString clientKey() const { return m_directory.filePath(QStringLiteral("client")); }
    QString strangerKey() const { return m_directory.filePath(QStringLiteral("stranger")); }
    // The line of a known_hosts file that names this server's host key.
    QByteArray knownHostsLine() const;
    // The SHA-256 of the server's host key, as ssh-keygen -l -E sha256 shows it (raw bytes).
    const QByteArray& hostKeySha256() const { return m_hostKeySha256; }

private:
    QTemporaryDir m_directory;
    QByteArray m_hostKeySha256;
    QString m_failure;
    ServerProcess m_server; // last: it stops first
};

} // namespace corvane::test
