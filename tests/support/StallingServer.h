// SPDX-License-Identifier: MIT
#pragma once

#include "LoopbackServer.h"

#include <QByteArray>

#include <atomic>
#include <cstdint>
#include <memory>

namespace corvane::test {

// A server on 127.0.0.1 that stops talking, for the time limits of transfers. Each connection it takes
// is answered in one of three ways, then held open in silence until the server is destroyed:
// - silent: nothing is ever said;
// - greeting: the given bytes, then nothing;
// - relay: the conversation is passed to and from a real server at upstreamPort, until
//   forwardedBytes of the upstream's answer have reached the client; then nothing more reaches it.
// It runs on a thread of its own, since the code under test blocks the test's thread.
class StallingServer {
public:
    struct Behaviour {
        QByteArray greeting;
        std::uint16_t upstreamPort = 0;
        std::int64_t forwardedBytes = 0;
        bool unreachable = false;
    };
    static Behaviour silent() { return {}; }
    static Behaviour greeting(QByteArray bytes) { return {std::move(bytes)}; }
    static Behaviour relay(std::uint16_t upstreamPort, std::int64_t forwardedBytes) { return {{}, upstreamPort, forwardedBytes}; }
    // A port whose accept queue is full: connecting to it never completes.
    static Behaviour unreachable() { return {{}, 0, 0, true}; }

    explicit StallingServer(Behaviour behaviour);
    ~StallingServer();

    StallingServer(const StallingServer&) = delete;
    StallingServer& operator=(const StallingServer&) = delete;

    std::uint16_t port() const { return m_port; }
    // Bytes of the upstream's answer that reached clients.
    std::int64_t forwarded() const { return m_forwarded.load(); }

private:
    void relayConnection(int client, const std::atomic<bool>& stopping);

    int m_listener = -1;
    int m_queueFiller = -1;
    std::uint16_t m_port = 0;
    Behaviour m_behaviour;
    std::atomic<std::int64_t> m_forwarded{0};
    std::unique_ptr<LoopbackServer> m_server;
};

} // namespace corvane::test
