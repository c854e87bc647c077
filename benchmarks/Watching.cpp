// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "benchmarks/support/BenchmarkFolders.h"
#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Floors.h"

#include <sys/inotify.h>
#include <unistd.h>

namespace {

std::vector<zef::Ref<ZEFFileItem>> itemsInFolder(const std::string& path)
{
    const auto operation = zef::makeRef<ZEFFileLoadOperation>();
    operation->setLoadingDirectory(ZEFFileItem::classObject.newFileItemForPath(path));
    operation->start();
    return operation->loadingArray()->takeAllObjects();
}

// Items of folders begin to watch. That they end it again is not timed.
void watching(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto items = itemsInFolder(BenchmarkFolders::shared().withFolders(count));
    std::vector<std::string> paths;
    paths.reserve(count);
    for (const auto& item : items)
        paths.push_back(item->url().path());

    Comparison comparison(state);
    for (auto _ : state) {
        const int queue = ::inotify_init1(IN_CLOEXEC);
        std::size_t watched = 0;
        comparison.round([&] { watched = watchByHand(queue, paths); }, [&] { ::close(queue); },
            [&] {
                for (const auto& item : items)
                    item->initKQueue();
            });
        if (items.size() != count || watched != count) {
            state.SkipWithError("not every folder could be watched");
            break;
        }
        for (const auto& item : items)
            item->endKQueue();
    }
}

BENCHMARK(watching)->Arg(10000)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
