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
    Remote(RemoteHandle handle, QList<QByteArray> fetchRefspecs)
        : m_handle(std::move(handle)), m_fetchRefspecs(std::move(fetchRefspecs))
    {
    }

    git_remote* raw() const { return m_handle.get(); }
    // The URL it fetches from, as configured.
    QUrl url() const { return QUrl(QString::fromUtf8(git_remote_url(m_handle.get()))); }
    const QList<QByteArray>& fetchRefspecs() const { return m_fetchRefspecs; }

private:
    RemoteHandle m_handle;
    QList<QByteArray> m_fetchRefspecs;
};

} // namespace corvane
