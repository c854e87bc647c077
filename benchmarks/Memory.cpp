// SPDX-License-Identifier: MIT
#include "benchmarks/Memory.h"

#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "benchmarks/support/BenchmarkFolders.h"
#include "benchmarks/support/BenchmarkTrees.h"
#include "benchmarks/support/ProgramOutput.h"
#include "benchmarks/support/WatchedFolders.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <malloc.h>
#include <sys/resource.h>

namespace {

constexpr const char* memoryOption = "--memory";
constexpr const char* alone = "alone";
constexpr const char* walked = "walked";
constexpr const char* observed = "observed";

// The soft limit of most systems, and one with which the library holds as many descriptors as it
// ever does.
constexpr int usualDescriptors = 1024;
constexpr int manyDescriptors = 16384;

// With what the heap itself needs for each block.
std::size_t bytesInUse()
{
    const auto information = ::mallinfo2();
    return information.uordblks + information.hblkhd;
}

// With the registry's table, and without the array that keeps the items alive.
double bytesForItems(const std::string& path, std::size_t count)
{
    const auto items = zef::makeRef<ZEFFileItemArray>(count);
    const auto before = bytesInUse();
    auto operation = zef::makeRef<ZEFFileLoadOperation>();
    operation->setLoadingDirectory(ZEFFileItem::classObject.newFileItemForPath(path));
    operation->setLoadingArray(items);
    operation->start();
    operation = nullptr;
    const auto after = bytesInUse();
    return items->count() == count ? static_cast<double>(after - before) : 0;
}

// At the end of a recursive walk, its own tables still there.
double bytesForWalkedItems(const std::string& path, std::size_t count)
{
    const auto items = zef::makeRef<ZEFFileItemArray>(count + 1);
    const auto files = zef::makeRef<ZEFFileItemArray>();
    const auto before = bytesInUse();
    files->addObject(ZEFFileItem::classObject.newFileItemForPath(path));
    auto operation = zef::makeRef<ZEFFileLoadOperation>();
    operation->setRecursive(true);
    operation->setFilesToIterate(files.get());
    operation->setLoadingArray(items);
    operation->start();
    const auto after = bytesInUse();
    return items->count() == count + 1 ? static_cast<double>(after - before) : 0;
}

// After a first full check, in which every item got a record for its observer, and with all that
// finds the files again after a move. What the process has once, for however many, is in it too.
double bytesForObservedItems(const std::string& path, std::size_t count)
{
    const auto before = bytesInUse();
    WatchedFolders watched({ path });
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    watched.poll();
    const auto after = bytesInUse();
    const auto subscriptions = ZEFFileManager::defaultFileManager()->subscriptions();
    if (subscriptions.size() != 1 || subscriptions[0]->files()->count() != count)
        return 0;
    return static_cast<double>(after - before);
}

void memory(benchmark::State& state, const char* circumstance)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto& path = circumstance == walked ? BenchmarkTrees::shared().wide()
                                              : BenchmarkFolders::shared().withFiles(count);
    std::string output;
    for (auto _ : state)
        output = outputOfThisProgram({ memoryOption, circumstance, std::to_string(count), path,
            std::to_string(state.range(1)) });
    const double bytes = std::atof(output.c_str()) / static_cast<double>(count);
    if (bytes <= 0)
        state.SkipWithError("the memory could not be measured");
    state.counters["bytes"] = bytes;
}

bool limitDescriptors(rlim_t count)
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = count;
    return ::setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

// Nothing varies from one run to the next, so one is enough.
BENCHMARK_CAPTURE(memory, alone, alone)
    ->Args({ 10000, usualDescriptors })
    ->Args({ 100000, usualDescriptors })
    ->Iterations(1)
    ->Repetitions(1);
BENCHMARK_CAPTURE(memory, walked, walked)
    ->Args({ static_cast<std::int64_t>(BenchmarkTrees::entryCount()), usualDescriptors })
    ->Iterations(1)
    ->Repetitions(1);
BENCHMARK_CAPTURE(memory, observed, observed)
    ->ArgsProduct({ { 10000, 100000 }, { usualDescriptors, manyDescriptors } })
    ->Iterations(1)
    ->Repetitions(1);

} // namespace

std::optional<int> measureMemoryIfAsked(int argumentCount, char** arguments)
{
    if (argumentCount != 6 || std::strcmp(arguments[1], memoryOption) != 0)
        return std::nullopt;
    const auto count = static_cast<std::size_t>(std::strtoull(arguments[3], nullptr, 10));
    if (!limitDescriptors(std::strtoull(arguments[5], nullptr, 10)))
        return EXIT_FAILURE;
    const auto bytes = std::strcmp(arguments[2], alone) == 0 ? bytesForItems
        : std::strcmp(arguments[2], walked) == 0             ? bytesForWalkedItems
                                                             : bytesForObservedItems;
    std::printf("%.0f\n", bytes(arguments[4], count));
    return EXIT_SUCCESS;
}
