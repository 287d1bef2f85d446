// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QStringList>

namespace corvane::test {

// One of the Python proxies beside this file (logging-, delaying-, throttling-proxy.py) on a free port of
// 127.0.0.1, for as long as the object lives.
class ScriptedProxy {
public:
    ScriptedProxy(const QString& script, const QStringList& arguments = {});
    ~ScriptedProxy();

    ScriptedProxy(const ScriptedProxy&) = delete;
    ScriptedProxy& operator=(const ScriptedProxy&) = delete;

    bool isRunning() const { return m_port != 0; }
    int port() const { return m_port; }
    // http://[userInfo@]127.0.0.1:PORT
    QString url(const QString& userInfo = {}) const;
    // The lines the script printed after its port so far (the logging proxy's requests).
    QStringList lines();

private:
    QProcess m_process;
    int m_port = 0;
    QStringList m_lines;
};

} // namespace corvane::test
