// SPDX-License-Identifier: MIT
#include "GitRepositoryFixture.h"

#include <QDir>
#include <QProcess>
#include <QProcessEnvironment>

namespace corvane::test {

QString runGit(const QString& workingDirectory, const QStringList& arguments)
{
    QProcess git;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("GIT_CONFIG_NOSYSTEM"), QStringLiteral("1"));
    environment.insert(QStringLiteral("GIT_CONFIG_GLOBAL"), QStringLiteral("/dev/null"));
    environment.insert(QStringLiteral("GIT_AUTHOR_NAME"), QStringLiteral("Theme Curator"));
    environment.insert(QStringLiteral("GIT_AUTHOR_EMAIL"), QStringLiteral("curator@example.org"));
    environment.insert(QStringLiteral("GIT_COMMITTER_NAME"), QStringLiteral("Theme Curator"));
    environment.insert(QStringLiteral("GIT_COMMITTER_EMAIL"), QStringLiteral("curator@example.org"));
    git.setProcessEnvironment(environment);
    git.setWorkingDirectory(workingDirectory);
    git.start(QStringLiteral("git"), arguments);
    if (!git.waitForFinished(120000) || git.exitStatus() != QProcess::NormalExit || git.exitCode() != 0)
        qFatal("git %s failed in %s: %s", qPrintable(arguments.join(u' ')), qPrintable(workingDirectory),
               git.readAllStandardError().constData());
    return QString::fromUtf8(git.readAllStandardOutput()).trimmed();
}

GitRepositoryFixture::GitRepositoryFixture(QString path) : m_path(std::move(path))
{
    QDir().mkpath(m_path);
    runGit(m_path, {QStringLiteral("init"), QStringLiteral("--quiet"), QStringLiteral("--initial-branch=master")});
}

QString GitRepositoryFixture::themesDirectory() const
{
    return QDir(m_path).filePath(QStringLiteral("Themes"));
}

QString GitRepositoryFixture::commitAll(const QString& message)
{
    runGit(m_path, {QStringLiteral("add"), QStringLiteral("--all")});
    runGit(m_path, {QStringLiteral("commit"), QStringLiteral("--quiet"), QStringLiteral("--allow-empty"),
                    QStringLiteral("-m"), message});
    return headCommit();
}

QString GitRepositoryFixture::headCommit() const
{
    return runGit(m_path, {QStringLiteral("rev-parse"), QStringLiteral("HEAD")});
}

} // namespace corvane::test
