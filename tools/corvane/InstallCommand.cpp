#include "CommandLine.h"
#include "Commands.h"

namespace corvane::cli {

int runInstall(const QStringList&)
{
    printError(QStringLiteral("corvane: this command is not available yet"));
    return failed;
}

} // namespace corvane::cli
