// SPDX-License-Identifier: MIT
#include "TlsFront.h"

#include <QFile>
#include <QProcess>

#include <openssl/err.h>
#include <openssl/ssl.h>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvane::test {
namespace {

bool openssl(const QString& directory, const QStringList& arguments)
{
    QProcess tool;
    tool.setWorkingDirectory(directory);
    tool.start(QStringLiteral("openssl"), arguments);
    return tool.waitForFinished(60000) && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0;
}

// A certificate authority of its own and a certificate for 127.0.0.1 signed by it, both for a day.
bool makeCertificates(const QString& directory)
{
    const QStringList key{"-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes"};
    QFile extensions(directory + "/server.ext");
    if (!extensions.open(QIODevice::WriteOnly) || extensions.write("subjectAltName=IP:127.0.0.1,DNS:127.0.0.1\n") < 0)
        return false;
    extensions.close();
    return openssl(directory, QStringList{"req", "-x509"} + key
                                  + QStringList{"-keyout", "ca.key", "-out", "ca.crt", "-days", "1", "-subj", "/CN=Corvane Test CA"})
        && openssl(directory, QStringList{"req"} + key
                                  + QStringList{"-keyout", "server.key", "-out", "server.csr", "-subj", "/CN=127.0.0.1"})
        && openssl(directory, {"x509", "-req", "-in", "server.csr", "-CA", "ca.crt", "-CAkey", "ca.key", "-CAcreateserial",
                               "-out", "server.crt", "-days", "1", "-extfile", "server.ext"});
}

} // namespace

TlsFront::TlsFront(std::uint16_t upstreamPort) : m_upstreamPort(upstreamPort)
{
    if (!makeCertificates(m_files.path()))
        return;
    SSL_CTX* context = SSL_CTX_new(TLS_server_method());
    if (SSL_CTX_use_certificate_file(context, qPrintable(m_files.filePath("server.crt")), SSL_FILETYPE_PEM) != 1
        || SSL_CTX_use_PrivateKey_file(context, qPrintable(m_files.filePath("server.key")), SSL_FILETYPE_PEM) != 1) {
        SSL_CTX_free(context);
        return;
    }
    m_context = context;
    m_server = std::make_unique<LoopbackServer>([this](int client, const std::atomic<bool>& stopping) { relay(client, stopping); });
}

TlsFront::~TlsFront()
{
    m_server.reset(); // its relays use the context
    SSL_CTX_free(static_cast<SSL_CTX*>(m_context));
}

void TlsFront::relay(int client, const std::atomic<bool>& stopping)
{
    SSL* tls = SSL_new(static_cast<SSL_CTX*>(m_context));
    SSL_set_fd(tls, client);
    const int upstream = SSL_accept(tls) == 1 ? connectToLoopback(m_upstreamPort) : -1;
    char buffer[16384];
    while (upstream >= 0 && !stopping) {
        pollfd sides[2] = {{client, POLLIN, 0}, {upstream, POLLIN, 0}};
        if (SSL_pending(tls) == 0 && ::poll(sides, 2, 50) <= 0)
            continue;
        if (SSL_pending(tls) > 0 || (sides[0].revents & (POLLIN | POLLHUP))) {
            const int length = SSL_read(tls, buffer, sizeof buffer);
            if (length <= 0)
                break;
            if (::send(upstream, buffer, size_t(length), MSG_NOSIGNAL) != length)
                break;
        }
        if (sides[1].revents & (POLLIN | POLLHUP)) {
            const ssize_t length = ::recv(upstream, buffer, sizeof buffer, 0);
            if (length <= 0 || SSL_write(tls, buffer, int(length)) != int(length))
                break;
        }
    }
    if (upstream >= 0)
        ::close(upstream);
    SSL_free(tls);
    ::close(client);
}

} // namespace corvane::test
