// SPDX-License-Identifier: MIT
#include "TrashSandbox.h"

#include <QDir>

namespace corvane::test {

TrashSandbox::TrashSandbox(const QString& dataHomeBelow)
    : m_dataHome(dataHomeBelow.isEmpty() ? m_home.path() : m_home.filePath(dataHomeBelow))
    , m_previous(qgetenv("XDG_DATA_HOME"))
    , m_hadPrevious(qEnvironmentVariableIsSet("XDG_DATA_HOME"))
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_dataHome));
}

TrashSandbox::~TrashSandbox()
{
    if (m_hadPrevious)
        qputenv("XDG_DATA_HOME", m_previous);
    else
        qunsetenv("XDG_DATA_HOME");
}

QString TrashSandbox::filesDirectory() const
{
    return m_dataHome + QStringLiteral("/Trash/files");
}

QString TrashSandbox::infoDirectory() const
{
    return m_dataHome + QStringLiteral("/Trash/info");
}

QStringList TrashSandbox::trashedNames() const
{
    return QDir(filesDirectory()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                            QDir::Name);
}

} // namespace corvane::test
