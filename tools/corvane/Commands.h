// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace corvane::cli {

// Each subcommand takes its own arguments (the subcommand's name first) and returns the exit status.
// Every one but show runs in corvane with a QCoreApplication; show runs in corvane-show with a
// QApplication.
int runLint(const QStringList& arguments);
int runCheck(const QStringList& arguments);
int runList(const QStringList& arguments);
int runInstall(const QStringList& arguments);
int runUndo(const QStringList& arguments);
int runShow(const QStringList& arguments);

// Replaces corvane by corvane-show with show's arguments (argv[2] on); returns only when that fails.
int handOverToShow(int argc, char** argv);

} // namespace corvane::cli
