#pragma once

#include <QByteArray>
#include <QUrl>

#include <atomic>
#include <thread>

namespace corvane::test {

// A git:// server on 127.0.0.1 that never finishes a transfer. Silent: it accepts and never says a
// word. Chatty: it answers the request with a reference listing, waits for the client's wants and then
// repeats the same progress message forever, sending no data.
class StalledGitServer {
public:
    enum class Behaviour { silent, chatty };

    explicit StalledGitServer(Behaviour behaviour);
    ~StalledGitServer();

    StalledGitServer(const StalledGitServer&) = delete;
    StalledGitServer& operator=(const StalledGitServer&) = delete;

    bool isListening() const { return m_port != 0; }
    QUrl url(const QString& userInfo = {}) const;

private:
    void serve();
    void converse(int connection);

    Behaviour m_behaviour;
    int m_listener = -1;
    quint16 m_port = 0;
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;
};

} // namespace corvane::test
