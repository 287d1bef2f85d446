// SPDX-License-Identifier: MIT
#pragma once

#include "LoopbackServer.h"

#include <QString>
#include <QTemporaryDir>

#include <atomic>
#include <cstdint>
#include <memory>

namespace corvane::test {

// https in front of a plain http server on 127.0.0.1: a test certificate authority and a certificate
// for 127.0.0.1 it signed (made with the openssl tool), and a TLS server that passes each connection's
// decrypted bytes to the upstream port and back. The clients under test must trust caFile().
class TlsFront {
public:
    explicit TlsFront(std::uint16_t upstreamPort);
    ~TlsFront();

    TlsFront(const TlsFront&) = delete;
    TlsFront& operator=(const TlsFront&) = delete;

    bool isRunning() const { return m_server != nullptr; }
    std::uint16_t port() const { return m_server ? m_server->port() : 0; }
    QString caFile() const { return m_files.filePath(QStringLiteral("ca.crt")); }

private:
    void relay(int client, const std::atomic<bool>& stopping);

    QTemporaryDir m_files;
    std::uint16_t m_upstreamPort;
    void* m_context = nullptr; // SSL_CTX
    std::unique_ptr<LoopbackServer> m_server;
};

} // namespace corvane::test
