// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "Commands.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QString>

#include <cerrno>
#include <cstring>
#include <vector>

#include <unistd.h>

namespace corvane::cli {
namespace {

// The directory of the running program, from the kernel: no QCoreApplication exists yet.
QString programDirectory()
{
    return QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).absolutePath();
}

} // namespace

int handOverToShow(int argc, char** argv)
{
    const QString here = programDirectory();
    // Beside corvane in the build tree; under libexec once installed.
    const QStringList candidates = {here + QStringLiteral("/corvane-show"),
                                    QDir::cleanPath(here + QStringLiteral("/" CORVANE_SHOW_FROM_BINDIR "/corvane-show"))};
    for (const QString& candidate : candidates) {
        if (!QFileInfo(candidate).isExecutable())
            continue;
        const QByteArray program = QFile::encodeName(candidate);
        std::vector<char*> arguments{const_cast<char*>(program.constData())};
        for (int index = 2; index < argc; ++index)
            arguments.push_back(argv[index]);
        arguments.push_back(nullptr);
        ::execv(program.constData(), arguments.data());
        printError(QStringLiteral("corvane show: could not start %1: %2")
                       .arg(QDir::toNativeSeparators(candidate), QString::fromLocal8Bit(std::strerror(errno))));
        return failed;
    }
    printError(QStringLiteral("corvane show: the window's program corvane-show is missing (looked for %1)")
                   .arg(candidates.join(QStringLiteral(" and "))));
    return failed;
}

} // namespace corvane::cli
