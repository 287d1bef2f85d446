// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

namespace corvane::test {

// Points XDG_DATA_HOME at a temporary directory while it lives, so moving to the Trash uses a Trash
// of the test's own and never the user's.
class TrashSandbox {
public:
    // The data home is the temporary directory itself, or `dataHomeBelow` inside it, left to be made
    // (a fresh account has none).
    explicit TrashSandbox(const QString& dataHomeBelow = QString());
    ~TrashSandbox();

    // $XDG_DATA_HOME.
    QString dataHome() const { return m_dataHome; }
    // The Trash's files directory ($XDG_DATA_HOME/Trash/files).
    QString filesDirectory() const;
    // The Trash's info directory ($XDG_DATA_HOME/Trash/info).
    QString infoDirectory() const;
    // The names of the items now in the Trash, sorted.
    QStringList trashedNames() const;

private:
    QTemporaryDir m_home;
    QString m_dataHome;
    QByteArray m_previous;
    bool m_hadPrevious;
};

} // namespace corvane::test
