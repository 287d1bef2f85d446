// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>
#include <variant>

namespace corvane {

// What a server asked for when it wanted to know who is fetching.
struct CredentialRequest {
    QUrl url;                         // the remote, without user information
    QString userName;                 // the user the remote's URL names; empty when it names none
    bool userPasswordAllowed = false; // https: a user name and password
    bool sshAllowed = false;          // ssh: a key file or the ssh agent
    int attempt = 1;                  // 2 and more: the server refused what was given before
};

// A user name and password for https (basic or negotiated by the server).
struct UserPassword {
    QString userName;
    QString password;
};

// An ssh key pair on disk; publicKeyPath may stay empty when libssh2 can derive it.
struct SshKey {
    QString userName;
    QString privateKeyPath;
    QString publicKeyPath;
    QString passphrase;
};

// The keys the user's ssh agent ($SSH_AUTH_SOCK) holds.
struct SshAgent {
    QString userName;
};

using Credentials = std::variant<UserPassword, SshKey, SshAgent>;

// Asked, on the thread that clones or fetches, whenever a server asks for credentials; nothing given
// (std::nullopt) lets the transfer fail with the server's refusal. Asked again with a higher attempt when
// the server refused the last answer, at most three times per transfer. What it gives is handed to the
// git library for this one transfer and never written anywhere.
using CredentialsProvider = std::function<std::optional<Credentials>(const CredentialRequest&)>;

// The server a transfer is about to trust.
struct ServerCertificate {
    QString host;
    QByteArray x509Der;          // https: the server's certificate, DER encoded
    QByteArray sshHostKeySha256; // ssh: the SHA-256 of the server's host key
};

// Asked, on the thread that clones or fetches, for a server the git library has already accepted (for
// https: a certificate that verified against the system's authorities for that host). Returning false
// stops the transfer. It can only refuse: a certificate the library rejected never reaches it. For ssh
// it is the only check of the host key.
using CertificateCheck = std::function<bool(const ServerCertificate&)>;

// How the module reaches a remote beyond its URL. Proxies come from git's configuration (http.proxy)
// and the environment (http_proxy, https_proxy, no_proxy), as for git itself.
struct RemoteAccess {
    CredentialsProvider credentials;
    CertificateCheck certificateCheck;
};

} // namespace corvane
