// SPDX-License-Identifier: MIT
#include "SshServer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <pwd.h>
#include <unistd.h>

namespace corvane::test {
namespace {

const QString sshd = QStringLiteral("/usr/sbin/sshd");

bool run(const QString& program, const QStringList& arguments, QByteArray* output = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return false;
    if (output)
        *output = process.readAllStandardOutput();
    return true;
}

// ECDSA keys in PEM form: what libssh2 1.10 reads and signs with in an algorithm today's sshd accepts
// (its RSA signatures are SHA-1 ones, which sshd refuses).
bool makeKey(const QString& path)
{
    return run(QStringLiteral("ssh-keygen"), {QStringLiteral("-q"), QStringLiteral("-t"), QStringLiteral("ecdsa"),
                                              QStringLiteral("-b"), QStringLiteral("256"), QStringLiteral("-m"),
                                              QStringLiteral("PEM"), QStringLiteral("-N"), QString(),
                                              QStringLiteral("-f"), path});
}

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

SshServer::SshServer()
{
    if (!QFileInfo(sshd).isExecutable()) {
        m_failure = QStringLiteral("%1 is missing (Debian: openssh-server)").arg(sshd);
        return;
    }
    const QString host = m_directory.filePath(QStringLiteral("host"));
    if (!makeKey(host) || !makeKey(clientKey()) || !makeKey(strangerKey())) {
        m_failure = QStringLiteral("ssh-keygen failed");
        return;
    }
    QFile::copy(clientKey() + QStringLiteral(".pub"), m_directory.filePath(QStringLiteral("authorized_keys")));
    QByteArray fingerprint; // "256 SHA256:<base64> comment (ECDSA)"
    if (run(QStringLiteral("ssh-keygen"), {QStringLiteral("-l"), QStringLiteral("-E"), QStringLiteral("sha256"),
                                           QStringLiteral("-f"), host + QStringLiteral(".pub")},
            &fingerprint)) {
        const QByteArray encoded = fingerprint.split(' ').value(1).mid(7);
        m_hostKeySha256 = QByteArray::fromBase64(encoded, QByteArray::OmitTrailingEquals);
    }
    // The privilege-separation directory sshd insists on when it runs as root.
    if (::geteuid() == 0)
        QDir().mkpath(QStringLiteral("/run/sshd"));

    for (int attempt = 0; attempt < 5 && m_port == 0; ++attempt) {
        const quint16 port = freePort();
        QFile config(m_directory.filePath(QStringLiteral("sshd_config")));
        if (!config.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return;
        config.write(QStringLiteral("Port %1\nListenAddress 127.0.0.1\nHostKey %2\nAuthorizedKeysFile %3\n"
                                    "PidFile %4\nStrictModes no\nUsePAM no\nPasswordAuthentication no\n"
                                    "KbdInteractiveAuthentication no\nPermitRootLogin prohibit-password\n"
                                    "AllowUsers %5\nLogLevel ERROR\n")
                         .arg(port)
                         .arg(host, m_directory.filePath(QStringLiteral("authorized_keys")),
                              m_directory.filePath(QStringLiteral("sshd.pid")), userName())
                         .toUtf8());
        config.close();
        m_process.start(sshd, {QStringLiteral("-D"), QStringLiteral("-e"), QStringLiteral("-f"), config.fileName()});
        if (!m_process.waitForStarted(5000))
            continue;
        for (int wait = 0; wait < 100 && m_process.state() == QProcess::Running; ++wait) {
            if (accepts(port)) {
                m_port = port;
                break;
            }
            QThread::msleep(50);
        }
        if (m_port == 0) {
            m_failure = QString::fromLocal8Bit(m_process.readAllStandardError());
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }
}

SshServer::~SshServer()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        if (!m_process.waitForFinished(5000)) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }
}

QUrl SshServer::url(const QString& absolutePath) const
{
    QUrl url;
    url.setScheme(QStringLiteral("ssh"));
    url.setUserName(userName());
    url.setHost(QStringLiteral("127.0.0.1"));
    url.setPort(m_port);
    url.setPath(absolutePath);
    return url;
}

QByteArray SshServer::knownHostsLine() const
{
    QFile key(m_directory.filePath(QStringLiteral("host.pub")));
    if (!key.open(QIODevice::ReadOnly))
        return {};
    const QList<QByteArray> fields = key.readAll().trimmed().split(' '); // type, key, comment
    return "[127.0.0.1]:" + QByteArray::number(m_port) + ' ' + fields.value(0) + ' ' + fields.value(1) + '\n';
}

QString SshServer::userName()
{
    const passwd* entry = ::getpwuid(::geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString();
}

} // namespace corvane::test
