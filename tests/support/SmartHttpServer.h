// SPDX-License-Identifier: MIT
#pragma once

#include "LoopbackServer.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <atomic>
#include <cstdint>

namespace corvane::test {

// A real smart-http git server on 127.0.0.1 for fetching: every request of git's http protocol is
// answered by `git http-backend`, run as a web server runs it (CGI), over the repositories below a
// directory, one request after another on kept-alive connections; the fetch's answer comes in chunks.
// Runs on threads of its own, since the code under test blocks the test's thread. Given a user and
// password, it answers every request without them (basic authentication) with 401, as a private
// repository's server does. Requests through a proxy (absolute targets) are answered too. Anything
// below /moved/ is redirected (301) to the same path without that prefix.
class SmartHttpServer {
public:
    explicit SmartHttpServer(QString basePath, QString user = {}, QString password = {});

    std::uint16_t port() const { return m_server.port(); }
    // http://127.0.0.1:PORT/<relative path>
    QUrl url(const QString& relativePath) const;

private:
    void answer(int client, const std::atomic<bool>& stopping);

    QString m_basePath;
    QByteArray m_authorization; // the expected "Basic ..." value; empty when none is needed
    LoopbackServer m_server;    // last: its handlers use the members above, so it stops first
};

} // namespace corvane::test
