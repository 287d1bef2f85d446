// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Configuration.h"
#include "Corvane/module/Result.h"
#include "Corvane/presentation/SkippedVersions.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace corvane::cli {

// Exit statuses every subcommand shares.
enum ExitStatus { done = 0, failed = 1, badUsage = 2 };

// A subcommand's parser with the options most of them share. Parsing prints the usage line on
// stderr for bad usage, and the help text on stdout for --help.
class CommandLine {
public:
    CommandLine(const QString& command, const QString& synopsis, const QString& description);

    QCommandLineParser& parser() { return m_parser; }
    void addLocations(bool remote, bool clone, bool installed);
    // --settings FILE and --include-skipped: the versions a host's window was told to skip.
    void addSkipOptions();

    // Empty on success; otherwise the exit status to return at once (0 after --help).
    std::optional<int> parse(const QStringList& arguments);

    // A URL as given; scp-like "[user@]host:path" (a colon before any slash) as ssh, as git takes it;
    // anything else as a local path.
    static QUrl locationFromArgument(const QString& argument);

    QUrl remote() const;
    QUrl clone() const;
    QUrl installed() const;
    // The locations, the branch of --branch, and credentials from git's credential helpers.
    Configuration configuration() const;
    // The skips of the --settings file; none without one or with --include-skipped. A file that does
    // not exist is an error: a mistyped name would otherwise skip nothing, silently.
    Result<SkippedVersions, QString> skippedVersions() const;

    // Prints "usage: ..." and the reason on stderr; returns badUsage.
    int usageError(const QString& reason) const;

private:
    QString m_command;
    QString m_synopsis;
    QCommandLineParser m_parser;
    QStringList m_requiredLocations;
};

// Writes one line to stdout or stderr, UTF-8, without buffering surprises between the two.
void printOut(const QString& line);
void printError(const QString& line);

} // namespace corvane::cli
