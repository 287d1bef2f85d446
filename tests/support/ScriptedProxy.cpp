// SPDX-License-Identifier: MIT
#include "ScriptedProxy.h"

namespace corvane::test {

ScriptedProxy::ScriptedProxy(const QString& script, const QStringList& arguments)
{
    m_process.start(QStringLiteral("python3"),
                    QStringList{qEnvironmentVariable("CORVANE_TEST_SOURCE_DIR") + "/tests/support/" + script} + arguments);
    if (m_process.waitForReadyRead(10000))
        m_port = m_process.readLine().trimmed().toInt();
}

ScriptedProxy::~ScriptedProxy()
{
    m_process.kill();
    m_process.waitForFinished();
}

QString ScriptedProxy::url(const QString& userInfo) const
{
    return "http://" + (userInfo.isEmpty() ? QString() : userInfo + u'@') + "127.0.0.1:" + QString::number(m_port);
}

QStringList ScriptedProxy::lines()
{
    m_process.waitForReadyRead(200);
    m_lines += QString::fromLatin1(m_process.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    return m_lines;
}

} // namespace corvane::test
