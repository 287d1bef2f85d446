// SPDX-License-Identifier: MIT
#include "SshServer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

void writeConfig(const QString& path, const QString& text)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(text.toUtf8());
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

    const QString config = m_directory.filePath(QStringLiteral("sshd_config"));
    m_server.start(sshd, [&](quint16 port) {
        writeConfig(config, QStringLiteral("Port %1\nListenAddress 127.0.0.1\nHostKey %2\nAuthorizedKeysFile %3\n"
                                           "PidFile %4\nStrictModes no\nUsePAM no\nPasswordAuthentication no\n"
                                           "KbdInteractiveAuthentication no\nPermitRootLogin prohibit-password\n"
                                           "AllowUsers %5\nLogLevel ERROR\n")
                                .arg(port)
                                .arg(host, m_directory.filePath(QStringLiteral("authorized_keys")),
                                     m_directory.filePath(QStringLiteral("sshd.pid")), userName()));
        return QStringList{QStringLiteral("-D"), QStringLiteral("-e"), QStringLiteral("-f"), config};
    });
    if (!isRunning())
        m_failure = m_server.failure();
}

QUrl SshServer::url(const QString& absolutePath) const
{
    QUrl url;
    url.setScheme(QStringLiteral("ssh"));
    url.setUserName(userName());
    url.setHost(QStringLiteral("127.0.0.1"));
    url.setPort(port());
    url.setPath(absolutePath);
    return url;
}

QByteArray SshServer::knownHostsLine() const
{
    QFile key(m_directory.filePath(QStringLiteral("host.pub")));
    if (!key.open(QIODevice::ReadOnly))
        return {};
    const QList<QByteArray> fields = key.readAll().trimmed().split(' '); // type, key, comment
    return "[127.0.0.1]:" + QByteArray::number(port()) + ' ' + fields.value(0) + ' ' + fields.value(1) + '\n';
}

QString SshServer::userName()
{
    const passwd* entry = ::getpwuid(::geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString();
}

} // namespace corvane::test
