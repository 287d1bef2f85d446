// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "Commands.h"
#include "ComparisonSetup.h"
#include "OutputField.h"

#include "Corvane/module/Localized.h"
#include "Corvane/themes/DeferredSync.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/undo/InstallRecord.h"

#include <QSet>

namespace corvane::cli {
namespace {

// Names are matched as themes are: canonically equivalent texts, case-sensitive. What a terminal
// sends may be composed differently from what a theme file holds.
QString canonical(const QString& name)
{
    return name.normalized(QString::NormalizationForm_C);
}

QString copyingFailedMessage(const QString& fileName)
{
    //% "The theme '%1' could not be copied. You can try to delete all local themes to start fresh."
    const QString format = localizedString(
        QT_TRID_NOOP("corvane.copying-failed.message"),
        "The theme '%1' could not be copied. You can try to delete all local themes to start fresh.");
    return fillPlaceholders(format, {fileName});
}

QString doneLine(const ThemeRow& row)
{
    if (row.isUpdate())
        return QStringLiteral("updated %1 %2 -> %3").arg(escapeField(row.entry.name), *row.entry.installedVersion,
                                                        row.entry.remoteVersion);
    return QStringLiteral("installed %1").arg(escapeField(row.entry.name));
}

} // namespace

int runInstall(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("install"),
        QStringLiteral("--remote URL --clone DIR --installed DIR [--branch NAME] (--all [--settings FILE "
                       "[--include-skipped]] | NAME...)"),
        QStringLiteral("Installs or updates themes as the updater window's buttons do: each chosen row's theme file "
                       "is copied from the clone into the installed-themes directory, in the window's order, the "
                       "file it replaces going to the Trash. A NAME chooses every row of that theme name. The "
                       "first failed copy stops the batch. --all leaves out the versions skipped in --settings; a NAME "
                       "installs its theme whether skipped or not."));
    commandLine.addLocations(true, true, true);
    commandLine.addSkipOptions();
    const QCommandLineOption all(QStringLiteral("all"), QStringLiteral("Install every row, as Update All does."));
    commandLine.parser().addOption(all);
    commandLine.parser().addPositionalArgument(QStringLiteral("NAME"), QStringLiteral("The name of a theme to install."),
                                               QStringLiteral("[NAME...]"));
    if (auto status = commandLine.parse(arguments))
        return *status;
    const QStringList names = commandLine.parser().positionalArguments();
    const bool installAll = commandLine.parser().isSet(all);
    if (installAll == !names.isEmpty())
        return commandLine.usageError(installAll ? QStringLiteral("--all and theme names exclude each other")
                                                 : QStringLiteral("name the themes to install, or give --all"));

    const auto skipped = commandLine.skippedVersions();
    if (!skipped) {
        printError(skipped.error());
        return failed;
    }
    auto rows = findThemeRows(commandLine.configuration());
    if (!rows) {
        printError(rows.error());
        return failed;
    }
    // A theme named on the command line is wanted, skipped or not.
    if (installAll)
        removeSkipped(*rows, *skipped);

    int status = done;
    QList<const ThemeRow*> chosen;
    if (installAll) {
        for (const ThemeRow& row : *rows)
            chosen.append(&row);
    } else {
        QSet<QString> wanted;
        for (const QString& name : names)
            wanted.insert(canonical(name));
        QSet<QString> offered;
        for (const ThemeRow& row : *rows) {
            const QString name = canonical(row.entry.name);
            offered.insert(name);
            if (wanted.contains(name))
                chosen.append(&row);
        }
        QSet<QString> reported;
        for (const QString& name : names) {
            if (!offered.contains(canonical(name)) && !reported.contains(canonical(name))) {
                reported.insert(canonical(name));
                printError(QStringLiteral("corvane install: no new or updated theme is named '%1'").arg(name));
                status = failed;
            }
        }
    }

    // In row order, as Update All copies; the first failure abandons the rest, and what was copied
    // before it stays installed.
    const auto fileCopier = FileManager::shared();
    // The whole run is one batch that `corvane undo` can take back.
    const InstallRecord record(commandLine.installed());
    // Durable a run of 128 copies at a time: one sync of the file system instead of three per theme.
    constexpr int copiesPerSync = 128;
    std::optional<DeferredSync> durability;
    int copiesInRun = 0;
    for (const ThemeRow* row : chosen) {
        if (copiesInRun++ % copiesPerSync == 0)
            durability.emplace();
        const auto copied = fileCopier->copy(row->entry.copyCommand);
        if (!copied) {
            printError(copyingFailedMessage(row->entry.copyCommand.sourceFileName()));
            printError(copied.error().errorDescription());
            return failed;
        }
        printOut(doneLine(*row));
    }
    return status;
}

} // namespace corvane::cli
