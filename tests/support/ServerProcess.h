// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QStringList>

#include <functional>

namespace corvane::test {

// A server program listening on a free port of 127.0.0.1 until stopped or destroyed. A port is free
// when probed but another process may take it before the program binds it, so a few are tried.
class ServerProcess {
public:
    ~ServerProcess() { stop(); }

    // Starts the program with the arguments that make it listen on the port given.
    void start(const QString& program, const std::function<QStringList(quint16 port)>& arguments);
    void stop();
    // 0 while not listening.
    quint16 port() const { return m_port; }
    // What the program said on its standard error before it failed to listen.
    const QString& failure() const { return m_failure; }

private:
    QProcess m_process;
    quint16 m_port = 0;
    QString m_failure;
};

} // namespace corvane::test
