// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "benchmarks/support/BenchmarkFolders.h"
#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Floors.h"

namespace {

// From a folder on disk to registered items in an array. That they are let go again is not timed.
void listing(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto& path = BenchmarkFolders::shared().withFiles(count);
    const auto folder = ZEFFileItem::classObject.newFileItemForPath(path);

    Comparison comparison(state);
    for (auto _ : state) {
        zef::Ref<ZEFFileLoadOperation> operation;
        comparison.round([&] { benchmark::DoNotOptimize(listByHand(path)); },
            [&] {
                operation = zef::makeRef<ZEFFileLoadOperation>();
                operation->setLoadingDirectory(folder);
            },
            [&] { operation->start(); });
        if (operation->loadingArray()->count() != count) {
            state.SkipWithError("the listing is not complete");
            break;
        }
    }
}

// What the file manager does beside the flat load. The listing is of a folder that nobody watches.
void filesInDirectory(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto& path = BenchmarkFolders::shared().withFiles(count);
    auto* manager = ZEFFileManager::defaultFileManager();
    const auto folder = manager->fileClass()->newFileItemForPath(path);

    Comparison comparison(state);
    for (auto _ : state) {
        zef::Ref<ZEFFileLoadOperation> operation;
        zef::Ref<ZEFFileItemArray> files;
        operation = zef::makeRef<ZEFFileLoadOperation>();
        operation->setLoadingDirectory(folder);
        comparison.round([&] { operation->start(); }, [&] { operation = nullptr; },
            [&] { files = manager->filesInDirectory(folder.get()); });
        if (!files || files->count() != count) {
            state.SkipWithError("the listing is not complete");
            break;
        }
    }
}

BENCHMARK(listing)->Arg(1000)->Iterations(100)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(listing)->Arg(10000)->Iterations(10)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(listing)->Arg(100000)->Iterations(2)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(filesInDirectory)
    ->Arg(10000)
    ->Iterations(10)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
