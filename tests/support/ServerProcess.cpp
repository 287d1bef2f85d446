// SPDX-License-Identifier: MIT
#include "ServerProcess.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

namespace corvane::test {
namespace {

quint16 freePort()
{
    QTcpServer probe;
    return probe.listen(QHostAddress::LocalHost, 0) ? probe.serverPort() : 0;
}

bool accepts(quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    return socket.waitForConnected(200);
}

} // namespace

void ServerProcess::start(const QString& program, const std::function<QStringList(quint16 port)>& arguments)
{
    for (int attempt = 0; attempt < 5 && m_port == 0; ++attempt) {
        const quint16 port = freePort();
        m_process.start(program, arguments(port));
        if (!m_process.waitForStarted(5000))
            continue;
        for (int wait = 0; wait < 100 && m_process.state() == QProcess::Running && m_port == 0; ++wait) {
            if (accepts(port))
                m_port = port;
            else
                QThread::msleep(50);
        }
        if (m_port == 0) {
            m_failure = QString::fromLocal8Bit(m_process.readAllStandardError());
            stop();
        }
    }
}

void ServerProcess::stop()
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
