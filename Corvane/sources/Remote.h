// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/GitHandles.h"

#include <QUrl>

namespace corvane {

// A configured remote of a repository, found by name.
class Remote {
public:
    explicit Remote(RemoteHandle handle) : m_handle(std::move(handle)) {}

    git_remote* raw() const { return m_handle.get(); }
    // The URL it fetches from, as configured.
    QUrl url() const { return QUrl(QString::fromUtf8(git_remote_url(m_handle.get()))); }

private:
    RemoteHandle m_handle;
};

} // namespace corvane
