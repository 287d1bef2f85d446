// SPDX-License-Identifier: MIT
// Undoing a batch of 2,000 updates, as the window's Undo or `corvane undo` does: each written file is
// checked against the digest the batch recorded and moved to the Trash, and each replaced file comes
// back out of the Trash. The target is 2 s for the whole undo. Files are warm (the batch just wrote
// them); the Trash lies in a temporary data home on the same file system, as the user's usually does.
//
// An update is undone by one exchange of two names (the written version and the replaced one in the
// Trash trade places). Beside it runs the undo done as separate moves, bare, with no record, no check
// and no care for names taken in the Trash: each written file into the Trash with an info file of its
// own, the replaced one back, its info file removed. On a shared machine the disk's wait dominates
// the wall time, so the two are compared in one run.

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/themes/DeferredSync.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/undo/InstallRecord.h"
#include "Corvane/undo/UndoLastInstall.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <QCryptographicHash>

#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

using namespace corvane;

namespace {

constexpr int themeCount = 2'000;

QByteArray themeDocument(int index, const char* version)
{
    QByteArray json = "{\n  \"name\": \"Theme " + QByteArray::number(index) + "\",\n  \"style\": \"dark\",\n"
        + "  \"author\": [ { \"name\": \"Mara Lindqvist\" } ],\n  \"version\": \"" + version + "\",\n  \"colors\": {\n";
    for (int colour = 0; colour < 26; ++colour)
        json += "    \"colour" + QByteArray::number(colour) + "\": \"#1d2a36\",\n";
    return json + "    \"end\": \"#000000\"\n  }\n}\n";
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        std::abort();
}

// The installed themes after an Update All of 2,000 updates made as the window makes it, the old
// versions in the Trash of a data home of its own.
struct Batch {
    QTemporaryDir root;
    const QString source = root.filePath("source"), installed = root.filePath("installed"), home = root.filePath("data");

    Batch()
    {
        QDir().mkpath(source);
        QDir().mkpath(installed);
        qputenv("XDG_DATA_HOME", QFile::encodeName(home));
        for (int index = 0; index < themeCount; ++index)
            writeFile(source + name(index), themeDocument(index, "2.0.0"));
    }

    static QString name(int index) { return QStringLiteral("/theme-%1.theme.json").arg(index); }

    // Updates over installed 1.0.0 versions, or new themes into an empty directory.
    void install(bool updates = true) const
    {
        QDir(home + "/Trash").removeRecursively();
        QDir(installed).removeRecursively();
        QDir().mkpath(installed);
        for (int index = 0; updates && index < themeCount; ++index)
            writeFile(installed + name(index), themeDocument(index, "1.0.0"));
        const InstallRecord record(QUrl::fromLocalFile(installed));
        const DeferredSync durability;
        for (int index = 0; index < themeCount; ++index) {
            if (!FileManager::shared()->copy(CopyCommand{source + name(index), installed + name(index)}))
                std::abort();
        }
    }
};

void undoOfUpdateAll(benchmark::State& state)
{
    const Batch batch;
    for (auto _ : state) {
        state.PauseTiming();
        batch.install(state.range(0) == 0);
        state.ResumeTiming();

        const auto undone = undoLastInstall(QUrl::fromLocalFile(batch.installed));
        if (!undone || undone->size() != (state.range(0) == 0 ? 2 : 1) * themeCount) {
            state.SkipWithError(undone ? "not every file undone" : qPrintable(undone.error().text));
            break;
        }
    }
    state.counters["themes"] = themeCount;
}

// Separate moves: for each file its bytes hashed, an info file written and the file renamed into the
// Trash, the old version renamed back and its info file removed, then one sync.
void undoBySeparateMoves(benchmark::State& state)
{
    const Batch batch;
    const QByteArray trash = QFile::encodeName(batch.home) + "/Trash";
    for (auto _ : state) {
        state.PauseTiming();
        batch.install();
        state.ResumeTiming();

        for (int index = themeCount - 1; index >= 0; --index) {
            const QByteArray installed = QFile::encodeName(batch.installed + Batch::name(index));
            QFile file(QString::fromLocal8Bit(installed));
            QCryptographicHash digest(QCryptographicHash::Sha256);
            if (!file.open(QIODevice::ReadOnly) || !digest.addData(&file))
                std::abort();
            file.close();
            const QByteArray newName = "new-" + QByteArray::number(index) + ".theme.json";
            const QByteArray info = trash + "/info/" + newName + ".trashinfo";
            const int descriptor = ::open(info.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
            const QByteArray content = "[Trash Info]\nPath=" + installed + "\nDeletionDate=2026-01-01T00:00:00\n";
            if (descriptor < 0 || ::write(descriptor, content.constData(), size_t(content.size())) != content.size())
                std::abort();
            ::close(descriptor);
            const QByteArray old = trash + "/files" + installed.mid(installed.lastIndexOf('/'));
            if (::rename(installed.constData(), (trash + "/files/" + newName).constData()) != 0
                || ::rename(old.constData(), installed.constData()) != 0)
                std::abort();
            ::unlink((trash + "/info" + installed.mid(installed.lastIndexOf('/')) + ".trashinfo").constData());
        }
        ::sync();
    }
    state.counters["themes"] = themeCount;
}

} // namespace

// 0: 2,000 updates; 1: 2,000 new themes, each of which goes to the Trash with an info file of its own.
BENCHMARK(undoOfUpdateAll)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();
BENCHMARK(undoBySeparateMoves)->Unit(benchmark::kMillisecond)->Iterations(5)->UseRealTime();

BENCHMARK_MAIN();
