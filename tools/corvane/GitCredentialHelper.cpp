// SPDX-License-Identifier: MIT
#include "GitCredentialHelper.h"

#include <QProcess>

#include <memory>
#include <mutex>

namespace corvane::cli {
namespace {

// The description of a credential in git's credential protocol: key=value lines and an empty line.
QByteArray describe(const QUrl& url, const QString& userName, const QString& password = {})
{
    QByteArray text = "protocol=" + url.scheme().toUtf8() + "\nhost=" + url.host().toUtf8();
    if (url.port() != -1)
        text += ':' + QByteArray::number(url.port());
    text += "\npath=" + url.path().mid(1).toUtf8() + '\n';
    if (!userName.isEmpty())
        text += "username=" + userName.toUtf8() + '\n';
    if (!password.isEmpty())
        text += "password=" + password.toUtf8() + '\n';
    return text + '\n';
}

// Runs `git credential ACTION`; its output, or nothing when git failed (no helper had an answer and
// no terminal could ask).
std::optional<QByteArray> gitCredential(const char* action, const QByteArray& input)
{
    QProcess git;
    git.start(QStringLiteral("git"), {QStringLiteral("credential"), QString::fromLatin1(action)});
    if (!git.waitForStarted())
        return std::nullopt;
    git.write(input);
    git.closeWriteChannel();
    if (!git.waitForFinished(-1) || git.exitStatus() != QProcess::NormalExit || git.exitCode() != 0)
        return std::nullopt;
    return git.readAllStandardOutput();
}

struct LastAnswer {
    std::mutex mutex;
    QUrl url;
    UserPassword credentials;
};

// The tool makes one configuration per run; its answers are approved once the command succeeded.
LastAnswer& lastAnswer()
{
    static LastAnswer answer;
    return answer;
}

} // namespace

CredentialsProvider gitCredentialHelper()
{
    return [last = &lastAnswer()](const CredentialRequest& request) -> std::optional<Credentials> {
        if (request.sshAllowed)
            return SshAgent{request.userName};
        if (!request.userPasswordAllowed)
            return std::nullopt;
        std::lock_guard guard(last->mutex);
        if (request.attempt > 1 && last->url == request.url)
            gitCredential("reject", describe(request.url, last->credentials.userName, last->credentials.password));
        const std::optional<QByteArray> answer = gitCredential("fill", describe(request.url, request.userName));
        if (!answer)
            return std::nullopt;
        UserPassword credentials;
        for (const QByteArray& line : answer->split('\n')) {
            if (line.startsWith("username="))
                credentials.userName = QString::fromUtf8(line.mid(9));
            else if (line.startsWith("password="))
                credentials.password = QString::fromUtf8(line.mid(9));
        }
        last->url = request.url;
        last->credentials = credentials;
        return credentials;
    };
}

void approveGitCredentials()
{
    LastAnswer& last = lastAnswer();
    std::lock_guard guard(last.mutex);
    if (last.url.isEmpty())
        return;
    gitCredential("approve", describe(last.url, last.credentials.userName, last.credentials.password));
    last.url.clear();
}

} // namespace corvane::cli
