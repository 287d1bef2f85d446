// SPDX-License-Identifier: MIT
#include "GitDaemon.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

namespace corvane::test {
namespace {

quint16 freePort()
{
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost, 0))
        return 0;
    return probe.serverPort();
}

bool accepts(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    return socket.waitForConnected(200);
}

} // namespace

GitDaemon::GitDaemon(QString basePath) : m_basePath(std::move(basePath))
{
    // The port is free when probed but another process may take it before the daemon binds; try a few.
    for (int attempt = 0; attempt < 5 && m_port == 0; ++attempt) {
        const quint16 port = freePort();
        m_process.start(QStringLiteral("git"),
                        {QStringLiteral("daemon"), QStringLiteral("--reuseaddr"), QStringLiteral("--export-all"),
                         QStringLiteral("--listen=127.0.0.1"), QStringLiteral("--port=%1").arg(port),
                         QStringLiteral("--base-path=%1").arg(m_basePath), m_basePath});
        if (!m_process.waitForStarted(5000))
            continue;
        for (int wait = 0; wait < 100; ++wait) {
            if (m_process.state() != QProcess::Running)
                break;
            if (accepts(port)) {
                m_port = port;
                break;
            }
            QThread::msleep(50);
        }
        if (m_port == 0)
            stop();
    }
}

GitDaemon::~GitDaemon()
{
    stop();
}

QUrl GitDaemon::url(const QString& relativePath) const
{
    return QUrl(QStringLiteral("git://127.0.0.1:%1/%2").arg(m_port).arg(relativePath));
}

void GitDaemon::stop()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        if (!m_process.waitForFinished(5000)) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }
    m_port = 0;
}

} // namespace corvane::test
