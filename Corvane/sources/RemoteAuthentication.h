// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/RemoteAccess.h"

#include <git2.h>

#include <QUrl>

namespace corvane {

// Answers libgit2's credential and certificate questions for one clone or fetch. The user and password
// of the configured URL are offered first, then the host's provider; the URL the repository stores never
// carries them. The host's certificate check runs only after libgit2 has accepted a server, so it can
// refuse but never let through what libgit2 refused.
class RemoteAuthentication {
public:
    // configuredUrl: the remote as the host configured it, user information included.
    RemoteAuthentication(const QUrl& configuredUrl, RemoteAccess access);

    // How often one transfer asks the provider; when the server refuses the last answer too, the
    // transfer fails with a text of its own rather than asking for ever.
    static constexpr int maximumAttempts = 3;

    // git_credential_acquire_cb
    int credentials(git_credential** out, const char* url, const char* userFromUrl, unsigned int allowedTypes);
    // git_transport_certificate_check_cb
    int certificate(git_cert* certificate, int valid, const char* host);

    // The URL as it may be stored and shown: without user information.
    static QUrl withoutUserInfo(const QUrl& url);

private:
    QUrl m_url;
    QString m_userName;
    QString m_password;
    RemoteAccess m_access;
    bool m_urlCredentialsOffered = false;
    int m_attempts = 0;
};

} // namespace corvane
