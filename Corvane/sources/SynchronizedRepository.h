// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Configuration.h"
#include "Corvane/module/RemoteAccess.h"
#include "Corvane/module/Result.h"
#include "Corvane/sources/GitError.h"
#include "Corvane/sources/Repository.h"
#include "Corvane/sources/SynchronizationProgress.h"

#include <QUrl>

namespace corvane {

// The module's local clone and the remote it mirrors. Synchronising brings the clone to exactly the
// remote's "origin/<branch>" ("origin/master" unless configured otherwise): open or clone, point
// "origin" at the configured remote if it has moved, fetch "origin", check the branch out by force.
class SynchronizedRepository {
public:
    SynchronizedRepository(QUrl localURL, QUrl remoteURL, QString branch = QStringLiteral("master"),
                           RemoteAccess access = {})
        : m_localURL(std::move(localURL)), m_remoteURL(std::move(remoteURL)), m_branch(std::move(branch)),
          m_access(std::move(access))
    {
    }
    explicit SynchronizedRepository(const Configuration& configuration)
        : SynchronizedRepository(configuration.localThemeRepositoryURL(), configuration.remoteThemeRepositoryURL(),
                                 configuration.branch(), configuration.remoteAccess())
    {
    }

    const QUrl& localURL() const { return m_localURL; }
    const QUrl& remoteURL() const { return m_remoteURL; }
    const QString& branch() const { return m_branch; }

    // Every later synchronisation reports its transfer and checkout to progress, on its own thread.
    void reportProgressTo(ReportsSynchronizationProgress progress) { m_progress = std::move(progress); }

    // Blocks for the whole network exchange; run it off the main thread. The first failure is the
    // result, unchanged; nothing is retried or cleaned up. Synchronisations of one clone never overlap,
    // in this process or another: the returned repository keeps the clone to its holder until it is
    // dropped, so what is read from it is what was synchronised.
    Result<Repository, GitError> synchronize() const;

private:
    QUrl m_localURL;
    QUrl m_remoteURL;
    QString m_branch;
    RemoteAccess m_access;
    ReportsSynchronizationProgress m_progress;
};

} // namespace corvane
