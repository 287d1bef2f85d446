// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

namespace corvane::test {

// Runs the git command-line tool with a fixed identity and no user or system configuration, so
// fixtures look the same on every machine. Fails the process on error: a broken fixture is no result.
QString runGit(const QString& workingDirectory, const QStringList& arguments);

// A real git repository with a working tree and the branch "master", built in a directory the test
// owns: the remote that the module clones from.
class GitRepositoryFixture {
public:
    // Initialises a repository at path (created if missing).
    explicit GitRepositoryFixture(QString path);

    const QString& path() const { return m_path; }
    QUrl fileUrl() const { return QUrl::fromLocalFile(m_path); }
    QString themesDirectory() const;

    // Stages everything and commits; returns the new commit's 40-digit id.
    QString commitAll(const QString& message);
    QString headCommit() const;

private:
    QString m_path;
};

} // namespace corvane::test
