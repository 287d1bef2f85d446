// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

namespace corvane::test {

// A TCP listener on 127.0.0.1 and a free port for the test servers: it takes connections on a thread of
// its own (the code under test blocks the test's thread) and serves each on another, with a handler
// that owns the client socket and returns once `stopping` is set. stop() (and the destructor) stops
// taking connections and waits for every handler: an owner calls it before it lets go of what the
// handlers use.
class LoopbackServer {
public:
    using Handler = std::function<void(int client, const std::atomic<bool>& stopping)>;

    explicit LoopbackServer(Handler handler);
    ~LoopbackServer();

    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    std::uint16_t port() const { return m_port; }
    void stop();

private:
    void serve();

    Handler m_handler;
    int m_listener = -1;
    std::uint16_t m_port = 0;
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;
    std::vector<std::thread> m_connections;
};

// A listening socket on 127.0.0.1 and a free port, with the given accept queue; the process stops when
// none can be had.
int listenOnLoopback(int backlog, std::uint16_t& port);
// A socket connected to 127.0.0.1:port, or -1.
int connectToLoopback(std::uint16_t port);

} // namespace corvane::test
