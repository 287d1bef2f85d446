// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "Commands.h"
#include "TerminalProgress.h"

#include "Corvane/module/CorvaneService.h"

#include <QCoreApplication>

#include <optional>
#include <variant>

namespace corvane::cli {

int runCheck(const QStringList& arguments)
{
    CommandLine commandLine(QStringLiteral("check"), QStringLiteral("--remote URL --clone DIR [--branch NAME] [--since COMMIT]"),
                            QStringLiteral("Synchronises the clone and tells whether the theme repository moved on "
                                           "since a commit: prints 'up-to-date' or 'update-available' and the "
                                           "commit's 40-digit id."));
    commandLine.addLocations(true, true, false);
    const QCommandLineOption since(QStringLiteral("since"), QStringLiteral("The commit the host remembered."),
                                   QStringLiteral("COMMIT"));
    commandLine.parser().addOption(since);
    if (const std::optional<int> status = commandLine.parse(arguments))
        return *status;
    if (!commandLine.parser().positionalArguments().isEmpty())
        return commandLine.usageError(QStringLiteral("unexpected argument '%1'")
                                          .arg(commandLine.parser().positionalArguments().constFirst()));

    std::optional<QString> sinceCommit;
    if (commandLine.parser().isSet(since))
        sinceCommit = commandLine.parser().value(since);

    int exitStatus = failed;
    TerminalProgress terminal;
    CorvaneService service(commandLine.configuration());
    service.reportProgressTo(terminal.reporter());
    service.checkInBackground(sinceCommit, CorvaneService::defaultTimeLimit, [&exitStatus, &terminal](const ThemeRepositoryStatus& status) {
        terminal.finish();
        std::visit(
            [&exitStatus](const auto& result) {
                using Case = std::decay_t<decltype(result)>;
                if constexpr (std::is_same_v<Case, UpToDate>) {
                    printOut(QStringLiteral("up-to-date"));
                    exitStatus = done;
                } else if constexpr (std::is_same_v<Case, UpdateAvailable>) {
                    printOut(QStringLiteral("update-available ") + result.commit);
                    exitStatus = done;
                } else {
                    printError(result.error.errorDescription());
                    exitStatus = failed;
                }
            },
            status);
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    return exitStatus;
}

} // namespace corvane::cli
