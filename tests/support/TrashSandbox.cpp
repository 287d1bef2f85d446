// SPDX-License-Identifier: MIT
#include "TrashSandbox.h"

#include <QDir>

namespace corvane::test {

TrashSandbox::TrashSandbox()
    : m_previous(qgetenv("XDG_DATA_HOME")), m_hadPrevious(qEnvironmentVariableIsSet("XDG_DATA_HOME"))
{
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_home.path()));
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
    return m_home.filePath(QStringLiteral("Trash/files"));
}

QStringList TrashSandbox::trashedNames() const
{
    return QDir(filesDirectory()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                            QDir::Name);
}

} // namespace corvane::test
