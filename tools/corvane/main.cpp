// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "Commands.h"
#include "GitCredentialHelper.h"

#include "Corvane/corvane_version.h"

#include <QCoreApplication>

#include <cstring>

namespace {

struct Subcommand {
    const char* name;
    int (*run)(const QStringList&);
    const char* summary;
};

constexpr Subcommand subcommands[] = {
    {"check", corvane::cli::runCheck, "tell whether the theme repository moved on since a commit"},
    {"list", corvane::cli::runList, "list the new and updated themes the updater window would show"},
    {"install", corvane::cli::runInstall, "install or update themes as the window's buttons do"},
    {"undo", corvane::cli::runUndo, "undo the last install batch in an installed-themes directory"},
    {"lint", corvane::cli::runLint, "check every theme file of a directory"},
    {"show", nullptr, "open the updater window, or render it to a PNG"},
};

// On stdout when asked for, on stderr after bad usage.
void printUsage(void (*print)(const QString&))
{
    print(QStringLiteral("usage: corvane <command> [options]   (corvane <command> --help)"));
    print(QStringLiteral("       corvane --version"));
    for (const Subcommand& command : subcommands)
        print(QStringLiteral("  %1  %2").arg(QString::fromLatin1(command.name).leftJustified(8),
                                             QString::fromLatin1(command.summary)));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        printUsage(corvane::cli::printError);
        return corvane::cli::badUsage;
    }
    if (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
        printUsage(corvane::cli::printOut);
        return corvane::cli::done;
    }
    if (std::strcmp(argv[1], "--version") == 0) {
        corvane::cli::printOut(QStringLiteral("corvane " CORVANE_VERSION));
        return corvane::cli::done;
    }
    for (const Subcommand& command : subcommands) {
        if (std::strcmp(argv[1], command.name) != 0)
            continue;
        // The window needs QtGui and QtWidgets, which the other commands never load.
        if (!command.run)
            return corvane::cli::handOverToShow(argc, argv);
        QCoreApplication application(argc, argv);
        QCoreApplication::setApplicationName(QStringLiteral("corvane"));
        QStringList arguments = QCoreApplication::arguments();
        arguments.removeFirst(); // the program; the subcommand's name stands first, as a parser expects
        const int status = command.run(arguments);
        if (status == corvane::cli::done)
            corvane::cli::approveGitCredentials();
        return status;
    }
    corvane::cli::printError(QStringLiteral("corvane: unknown command '%1'").arg(QString::fromLocal8Bit(argv[1])));
    printUsage(corvane::cli::printError);
    return corvane::cli::badUsage;
}
