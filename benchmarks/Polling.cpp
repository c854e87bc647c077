// SPDX-License-Identifier: MIT
#include "benchmarks/support/BenchmarkFolders.h"
#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Floors.h"
#include "benchmarks/support/WatchedFolders.h"
#include "tests/support/AllocationCounter.h"

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

std::size_t argument(const benchmark::State& state)
{
    return static_cast<std::size_t>(state.range(0));
}

std::vector<std::string> withSubfolders(const std::vector<std::string>& folders)
{
    auto paths = folders;
    for (const auto& folder : folders) {
        for (const auto& path : entryPaths(folder)) {
            if (fs::is_directory(path))
                paths.push_back(path);
        }
    }
    return paths;
}

// A subscription asks its folder and the folders in it, and nothing else while they are unchanged.
void unchangedPoll(benchmark::State& state)
{
    const auto& folders = BenchmarkFolders::shared().trees(argument(state));
    const auto paths = withSubfolders(folders);
    WatchedFolders watched(folders);

    std::size_t allocations = 0;
    std::size_t records = 0;
    Comparison comparison(state);
    for (auto _ : state) {
        comparison.round([&] { benchmark::DoNotOptimize(statByHand(paths)); },
            [&] {
                const AllocationCounter counter;
                records += watched.recordsOfPoll();
                allocations += counter.count();
            });
    }
    if (records)
        state.SkipWithError("a poll found something where nothing changed");
    state.counters["allocations"] = static_cast<double>(allocations);
}

// A new file, made before the poll and removed after it.
class PassingFile {
public:
    explicit PassingFile(const std::string& folder)
        : _path(folder + "/document-newest-.txt")
    {
    }

    void make() const { std::ofstream(_path).exceptions(std::ios::failbit); }
    void remove() const { fs::remove(_path); }

private:
    std::string _path;
};

void pollOneChange(benchmark::State& state)
{
    const auto& folders = BenchmarkFolders::shared().trees(argument(state));
    const auto paths = withSubfolders(folders);
    const PassingFile file(folders[folders.size() / 2]);
    WatchedFolders watched(folders);

    Comparison comparison(state);
    for (auto _ : state) {
        std::size_t records = 0;
        comparison.round([&] { benchmark::DoNotOptimize(statByHand(paths)); }, [&] { file.make(); },
            [&] { records = watched.recordsOfPoll(); });
        if (records != 2) {
            state.SkipWithError("the poll has to tell of the folder and of the new file");
            break;
        }
        file.remove();
        watched.poll();
    }
}

// The folder's own attributes change, so every file in it is asked, and none has anything to tell.
void fullCheck(benchmark::State& state)
{
    const auto& folder = BenchmarkFolders::shared().withFiles(argument(state));
    const auto paths = entryPaths(folder);
    WatchedFolders watched({ folder });

    Comparison comparison(state);
    for (auto _ : state) {
        std::size_t records = 0;
        comparison.round([&] { benchmark::DoNotOptimize(statByHand(paths)); },
            [&] { fs::permissions(folder, fs::perms::owner_all); },
            [&] { records = watched.recordsOfPoll(); });
        if (records != 1) {
            state.SkipWithError("the poll has to tell of the folder and of nothing else");
            break;
        }
    }
}

void pollOneNewFile(benchmark::State& state)
{
    const auto& folder = BenchmarkFolders::shared().withFiles(argument(state));
    const auto paths = entryPaths(folder);
    const PassingFile file(folder);
    WatchedFolders watched({ folder });

    Comparison comparison(state);
    for (auto _ : state) {
        std::size_t records = 0;
        comparison.round([&] { benchmark::DoNotOptimize(statByHand(paths)); }, [&] { file.make(); },
            [&] { records = watched.recordsOfPoll(); });
        if (records != 2) {
            state.SkipWithError("the poll has to tell of the folder and of the new file");
            break;
        }
        file.remove();
        watched.poll();
    }
}

BENCHMARK(unchangedPoll)->Arg(1)->Iterations(5000)->UseManualTime();
BENCHMARK(unchangedPoll)->Arg(100)->Iterations(50)->UseManualTime();
BENCHMARK(unchangedPoll)->Arg(1000)->Iterations(5)->UseManualTime();
BENCHMARK(pollOneChange)->Arg(100)->Iterations(50)->UseManualTime();
BENCHMARK(fullCheck)->Arg(1000)->Iterations(50)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(fullCheck)->Arg(100000)->Iterations(2)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(pollOneNewFile)
    ->Arg(100000)
    ->Iterations(2)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
