// SPDX-License-Identifier: MIT
#include "Corvane/sources/RemoteAuthentication.h"

#include "Corvane/module/Localized.h"
#include "Corvane/sources/CredentialRedaction.h"

#include <type_traits>

namespace corvane {
namespace {

QByteArray utf8(const QString& text)
{
    return text.toUtf8();
}

const char* orNull(const QByteArray& bytes)
{
    return bytes.isEmpty() ? nullptr : bytes.constData();
}

int refuse(int code, const QString& message)
{
    git_error_set_str(GIT_ERROR_NET, message.toUtf8().constData());
    return code;
}

// The host's check said no.
int refuseCertificate(const QString& host)
{
    //% "The certificate of %1 was refused by the application."
    const QString format = localizedString(QT_TRID_NOOP("corvane.git.certificate-refused"),
                                           "The certificate of %1 was refused by the application.");
    return refuse(GIT_ECERTIFICATE, fillPlaceholders(format, {host}));
}

} // namespace

RemoteAuthentication::RemoteAuthentication(const QUrl& configuredUrl, RemoteAccess access)
    : m_url(withoutUserInfo(configuredUrl)),
      m_userName(configuredUrl.userName(QUrl::FullyDecoded)),
      m_password(configuredUrl.password(QUrl::FullyDecoded)),
      m_access(std::move(access))
{
}

QUrl RemoteAuthentication::withoutUserInfo(const QUrl& url)
{
    QUrl stripped = url;
    stripped.setUserInfo(QString());
    return stripped;
}

int RemoteAuthentication::credentials(git_credential** out, const char*, const char* userFromUrl,
                                      unsigned int allowedTypes)
{
    const bool userPasswordAllowed = allowedTypes & GIT_CREDENTIAL_USERPASS_PLAINTEXT;
    const bool sshAllowed = allowedTypes & (GIT_CREDENTIAL_SSH_KEY | GIT_CREDENTIAL_SSH_MEMORY);
    QString userName = userFromUrl && *userFromUrl ? QString::fromUtf8(userFromUrl) : m_userName;

    // The configured URL's own user and password, once: what git does with such a URL.
    if (userPasswordAllowed && !m_password.isEmpty() && !m_urlCredentialsOffered) {
        m_urlCredentialsOffered = true;
        return git_credential_userpass_plaintext_new(out, utf8(m_userName).constData(), utf8(m_password).constData());
    }
    // ssh first asks who connects when the URL names nobody.
    if ((allowedTypes & GIT_CREDENTIAL_USERNAME) && !userName.isEmpty())
        return git_credential_username_new(out, utf8(userName).constData());

    if (!m_access.credentials || !(userPasswordAllowed || sshAllowed || (allowedTypes & GIT_CREDENTIAL_USERNAME)))
        return GIT_PASSTHROUGH;
    if (m_attempts >= maximumAttempts) {
        //% "The server of %1 refused the credentials."
        const QString format = localizedString(QT_TRID_NOOP("corvane.git.credentials-refused"),
                                               "The server of %1 refused the credentials.");
        return refuse(GIT_EAUTH, fillPlaceholders(format, {displayUrl(m_url)}));
    }
    ++m_attempts;
    const std::optional<Credentials> given = m_access.credentials(
        CredentialRequest{m_url, userName, userPasswordAllowed, sshAllowed, m_attempts});
    if (!given)
        return GIT_PASSTHROUGH;

    return std::visit(
        [&](const auto& credentials) -> int {
            using Kind = std::decay_t<decltype(credentials)>;
            const QByteArray user = utf8(credentials.userName.isEmpty() ? userName : credentials.userName);
            if (allowedTypes & GIT_CREDENTIAL_USERNAME)
                return git_credential_username_new(out, user.constData());
            if constexpr (std::is_same_v<Kind, UserPassword>) {
                if (!userPasswordAllowed)
                    return GIT_PASSTHROUGH;
                return git_credential_userpass_plaintext_new(out, user.constData(), utf8(credentials.password).constData());
            } else if constexpr (std::is_same_v<Kind, SshKey>) {
                if (!(allowedTypes & GIT_CREDENTIAL_SSH_KEY))
                    return GIT_PASSTHROUGH;
                const QByteArray publicKey = utf8(credentials.publicKeyPath);
                const QByteArray passphrase = utf8(credentials.passphrase);
                return git_credential_ssh_key_new(out, user.constData(), orNull(publicKey),
                                                  utf8(credentials.privateKeyPath).constData(), orNull(passphrase));
            } else {
                if (!(allowedTypes & GIT_CREDENTIAL_SSH_KEY))
                    return GIT_PASSTHROUGH;
                return git_credential_ssh_key_from_agent(out, user.constData());
            }
        },
        *given);
}

int RemoteAuthentication::certificate(git_cert* certificate, int valid, const char* host)
{
    ServerCertificate server;
    server.host = QString::fromUtf8(host);
    if (certificate->cert_type == GIT_CERT_X509) {
        // libgit2 decides first; what it refused stays refused.
        if (!valid)
            return GIT_PASSTHROUGH;
        const auto* x509 = reinterpret_cast<const git_cert_x509*>(certificate);
        server.x509Der = QByteArray(static_cast<const char*>(x509->data), qsizetype(x509->len));
    } else if (certificate->cert_type == GIT_CERT_HOSTKEY_LIBSSH2) {
        const auto* hostKey = reinterpret_cast<const git_cert_hostkey*>(certificate);
        if (hostKey->type & GIT_CERT_SSH_SHA256)
            server.sshHostKeySha256 = QByteArray(reinterpret_cast<const char*>(hostKey->hash_sha256), 32);
        // libgit2 asks before it looks the key up in the user's known_hosts (so "valid" is always false
        // here) and checks it there when we pass: the host's check can only refuse first.
        if (m_access.certificateCheck && !m_access.certificateCheck(server))
            return refuseCertificate(server.host);
        return GIT_PASSTHROUGH;
    }
    if (!m_access.certificateCheck)
        return GIT_PASSTHROUGH;
    if (m_access.certificateCheck(server))
        return valid ? 0 : GIT_PASSTHROUGH;
    return refuseCertificate(server.host);
}

} // namespace corvane
