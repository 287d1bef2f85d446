// SPDX-License-Identifier: MIT
// Reading a directory of 10,000 theme files of about 1 KB, as a refresh does twice (the clone's
// Themes and the installed themes), against the floor of merely reading every file's bytes. The
// reading should cost at most 1.3 times the floor: listing, decoding and sorting must not dominate.
//
// The files sit in the page cache after the first iteration, as they do for a refresh that follows
// a synchronisation; every figure here is for warm files.

#include "Corvane/themes/FileManager.h"
#include "Corvane/themes/ThemeJsonParser.h"
#include "Corvane/themes/ThemeReader.h"

#include <benchmark/benchmark.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

using namespace corvane;

namespace {

constexpr int fileCount = 10'000;
// A collection's authors each made several themes (a dark and a light variant at least).
constexpr int distinctAuthorLists = 1'000;

// About 1 KB, like the theme files of a real collection: the four keys and the host's colours.
QByteArray themeDocument(int index)
{
    QByteArray json = "{\n  \"name\": \"Theme " + QByteArray::number(index * 7919 % fileCount)
        + "\",\n  \"style\": \"" + (index % 2 ? "light" : "dark") + "\",\n"
        + "  \"author\": [ { \"name\": \"Mara Lindqvist " + QByteArray::number(index % distinctAuthorLists)
        + "\" }, { \"name\": \"Tom\u00e1s Ortega\" } ],\n"
        + "  \"version\": \"1." + QByteArray::number(index % 17) + ".0\",\n  \"colors\": {\n";
    for (int colour = 0; colour < 26; ++colour)
        json += "    \"editor.token" + QByteArray::number(colour) + "\": \"#" + QByteArray::number(0x102030 + colour * 4099, 16)
            + "\",\n";
    json += "    \"accent\": \"#ff7a45\"\n  }\n}\n";
    return json;
}

struct Workload {
    QTemporaryDir directory;
    QList<QByteArray> paths; // encoded, in the directory's listing order, for the floor's plain calls
    QList<QByteArray> documents;

    Workload()
    {
        for (int index = 0; index < fileCount; ++index) {
            const QString path = directory.filePath(QStringLiteral("theme-%1.theme.json").arg(index));
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly))
                std::abort();
            documents.append(themeDocument(index));
            file.write(documents.last());
        }
        // The floor reads the files in the order the reader meets them: the directory's own order,
        // which is not the order of creation (the kernel's caches favour neither).
        const QByteArray base = QFile::encodeName(directory.path()) + '/';
        DIR* listing = ::opendir(base.constData());
        while (const dirent* entry = ::readdir(listing)) {
            if (entry->d_name[0] != '.')
                paths.append(base + entry->d_name);
        }
        ::closedir(listing);
    }
};

Workload& workload()
{
    static Workload instance;
    return instance;
}

double threadCpuSeconds()
{
    timespec now;
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// The floor: open, learn the size, read it whole, close. One read of size + 1 bytes finds the end
// of a file, as the reader's does.
std::size_t readEveryFile(const QList<QByteArray>& paths, std::string& buffer)
{
    std::size_t total = 0;
    for (const QByteArray& path : paths) {
        const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
        struct stat status;
        ::fstat(descriptor, &status);
        buffer.resize(static_cast<std::size_t>(status.st_size) + 1);
        std::size_t length = 0;
        while (true) {
            const ssize_t count = ::read(descriptor, buffer.data() + length, buffer.size() - length);
            if (count <= 0)
                break;
            length += static_cast<std::size_t>(count);
            if (length == static_cast<std::size_t>(status.st_size))
                break;
        }
        ::close(descriptor);
        total += length;
    }
    return total;
}

void ReadFileBytes(benchmark::State& state)
{
    Workload& files = workload();
    std::string buffer;
    for (auto _ : state)
        benchmark::DoNotOptimize(readEveryFile(files.paths, buffer));
    state.SetItemsProcessed(state.iterations() * fileCount);
}
BENCHMARK(ReadFileBytes)->Unit(benchmark::kMillisecond);

// The same with Qt's file class, for scale.
void ReadFileBytesWithQFile(benchmark::State& state)
{
    Workload& files = workload();
    for (auto _ : state) {
        qsizetype total = 0;
        for (const QByteArray& path : std::as_const(files.paths)) {
            QFile file(QFile::decodeName(path));
            file.open(QIODevice::ReadOnly);
            total += file.readAll().size();
        }
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * fileCount);
}
BENCHMARK(ReadFileBytesWithQFile)->Unit(benchmark::kMillisecond);

// What a refresh does for one directory: list, filter, read, decode, sort.
void ReadThemes(benchmark::State& state)
{
    Workload& files = workload();
    const ThemeReader reader(std::make_shared<ThemeDecoder>(), FileManager::shared());
    const QUrl directory = QUrl::fromLocalFile(files.directory.path());
    for (auto _ : state) {
        auto themes = reader.readThemes(directory);
        if (!themes || themes->size() != fileCount) {
            state.SkipWithError("the reading failed");
            break;
        }
        benchmark::DoNotOptimize(themes);
    }
    state.SetItemsProcessed(state.iterations() * fileCount);
}
BENCHMARK(ReadThemes)->Unit(benchmark::kMillisecond);

// The figure that matters, robust against a machine whose speed drifts: every iteration reads the
// directory both ways, one right after the other, and the figure is the median of the iterations'
// ratios of CPU time, so a burst of load from elsewhere moves it little.
void ReadingAgainstFloor(benchmark::State& state)
{
    Workload& files = workload();
    const ThemeReader reader(std::make_shared<ThemeDecoder>(), FileManager::shared());
    const QUrl directory = QUrl::fromLocalFile(files.directory.path());
    std::string buffer;
    std::vector<double> ratios;
    double floorTime = 0;
    double readingTime = 0;
    for (auto _ : state) {
        const double start = threadCpuSeconds();
        benchmark::DoNotOptimize(readEveryFile(files.paths, buffer));
        const double between = threadCpuSeconds();
        auto themes = reader.readThemes(directory);
        benchmark::DoNotOptimize(themes);
        themes = {}; // the result's release belongs to the reading's cost
        const double end = threadCpuSeconds();
        floorTime += between - start;
        readingTime += end - between;
        ratios.push_back((end - between) / (between - start));
    }
    std::nth_element(ratios.begin(), ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2), ratios.end());
    const double iterations = static_cast<double>(state.iterations());
    state.counters["floor_ms"] = floorTime * 1000 / iterations;
    state.counters["reading_ms"] = readingTime * 1000 / iterations;
    state.counters["ratio"] = ratios[ratios.size() / 2];
}
BENCHMARK(ReadingAgainstFloor)->Unit(benchmark::kMillisecond);

// The parts of the reading, to see where its time goes.
void ListDirectory(benchmark::State& state)
{
    Workload& files = workload();
    const QUrl directory = QUrl::fromLocalFile(files.directory.path());
    for (auto _ : state) {
        auto listed = FileManager::shared()->entriesInDirectory(directory);
        benchmark::DoNotOptimize(listed);
    }
    state.SetItemsProcessed(state.iterations() * fileCount);
}
BENCHMARK(ListDirectory)->Unit(benchmark::kMillisecond);

void DecodeFromMemory(benchmark::State& state)
{
    Workload& files = workload();
    ThemeJsonParser parser;
    for (auto _ : state) {
        for (const QByteArray& document : std::as_const(files.documents)) {
            auto theme = parser.decode(document);
            benchmark::DoNotOptimize(theme);
        }
    }
    state.SetItemsProcessed(state.iterations() * fileCount);
}
BENCHMARK(DecodeFromMemory)->Unit(benchmark::kMillisecond);

// Prints the figure that matters, the reading against its floor, after the usual table.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration || run.aggregate_name == "median")
                m_times[run.run_name.function_name] = {run.GetAdjustedRealTime(), run.GetAdjustedCPUTime()};
        }
    }

    void Finalize() override
    {
        ConsoleReporter::Finalize();
        const auto floor = m_times.find("ReadFileBytes");
        const auto reading = m_times.find("ReadThemes");
        if (floor == m_times.end() || reading == m_times.end() || floor->second.first <= 0 || floor->second.second <= 0)
            return;
        // CPU time is the steadier figure on a shared machine; both are printed.
        std::printf("ReadThemes / ReadFileBytes: %.2f in real time, %.2f in CPU time (target: at most 1.30)\n",
                    reading->second.first / floor->second.first, reading->second.second / floor->second.second);
    }

private:
    std::map<std::string, std::pair<double, double>> m_times; // real, CPU
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
