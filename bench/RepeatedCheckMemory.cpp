// SPDX-License-Identifier: MIT
// Heap that stays allocated across repeated repository checks in one long-running process, as a host
// that checks periodically runs them. Makes a file:// remote and a clone under a temporary directory,
// checks N times (1,000 by default) and prints the heap in use after each step of ten times as many.
//
//   bench/RepeatedCheckMemory [CHECKS]
#include "Corvane/module/CorvaneService.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <malloc.h>

#include <cstdio>

using namespace corvane;

namespace {

void git(const QString& directory, const QStringList& arguments)
{
    QProcess process;
    process.setWorkingDirectory(directory);
    process.start(QStringLiteral("git"), QStringList{"-c", "user.name=Bench", "-c", "user.email=bench@example.org"} + arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("git %s failed", qPrintable(arguments.join(u' ')));
}

double heapKiB()
{
    return double(mallinfo2().uordblks) / 1024.0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const int checks = argc > 1 ? std::atoi(argv[1]) : 1000;
    QTemporaryDir root;
    const QString remote = root.filePath("remote");
    QDir().mkpath(remote + "/Themes");
    git(remote, {"init", "--quiet", "--initial-branch=master"});
    QFile theme(remote + "/Themes/Dusk.theme.json");
    theme.open(QIODevice::WriteOnly);
    theme.write(R"({"name":"Dusk","style":"dark","author":"Ada","version":"1.0.0"})");
    theme.close();
    git(remote, {"add", "--all"});
    git(remote, {"commit", "--quiet", "-m", "Themes"});

    const CorvaneService service(Configuration(QUrl::fromLocalFile(remote), QUrl::fromLocalFile(root.filePath("clone")), QUrl()));
    (void)service.repositoryStatus(std::nullopt); // the clone, and libgit2's one-time state
    const double start = heapKiB();
    std::printf("%8s %14s %18s\n", "checks", "heap (KiB)", "per check (bytes)");
    for (int done = 1, report = 1; done <= checks; ++done) {
        (void)service.repositoryStatus(std::nullopt);
        if (done == report || done == checks) {
            const double heap = heapKiB();
            std::printf("%8d %14.1f %18.1f\n", done, heap, (heap - start) * 1024.0 / done);
            report *= 10;
        }
    }
    return 0;
}
