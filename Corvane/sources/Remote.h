// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitHandles.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

namespace corvane {

// A configured remote of a repository, found by name, with the refspecs a fetch uses.
class Remote {
public:
    Remote(RemoteHandle handle, QByteArray name, QList<QByteArray> fetchRefspecs)
        : m_handle(std::move(handle)), m_name(std::move(name)), m_fetchRefspecs(std::move(fetchRefspecs))
    {
    }

    git_remote* raw() const { return m_handle.get(); }
    // Its name in the configuration ("origin"); libgit2's object is anonymous and does not know it.
    const QByteArray& name() const { return m_name; }
    // The URL it fetches from, as configured.
    QUrl url() const { return QUrl(QString::fromUtf8(git_remote_url(m_handle.get()))); }
    const QList<QByteArray>& fetchRefspecs() const { return m_fetchRefspecs; }

private:
    RemoteHandle m_handle;
    QByteArray m_name;
    QList<QByteArray> m_fetchRefspecs;
};

} // namespace corvane
