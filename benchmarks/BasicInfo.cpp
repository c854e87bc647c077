// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "benchmarks/support/BenchmarkFolders.h"
#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/GIOQuestions.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Items = std::vector<zef::Ref<ZEFFileItem>>;

constexpr std::size_t fileCount = 10000;

// Files of many kinds, as a folder of documents has them: one in twenty is a link, one a folder,
// one a desktop entry, one hidden.
class MixedFiles {
public:
    explicit MixedFiles(std::string folder)
        : _folder(std::move(folder))
    {
        fs::create_directory(_folder);
        for (std::size_t number = 0; number < fileCount; ++number)
            make(number);
    }

    ~MixedFiles() { fs::remove_all(_folder); }
    MixedFiles(const MixedFiles&) = delete;
    MixedFiles& operator=(const MixedFiles&) = delete;

    const std::vector<std::string>& paths() const { return _paths; }

    Items items() const
    {
        Items items;
        for (const auto& path : _paths)
            items.push_back(ZEFBasicInfoFileItem::classObject.newFileItemForPath(path));
        return items;
    }

private:
    void make(std::size_t number)
    {
        static constexpr std::array<const char*, 8> endings{ ".txt", ".png", ".tar.gz", ".cpp",
            ".odt", ".mp3", "", ".xyz" };
        const auto name = "document " + std::to_string(1000000 + number).substr(1);
        const auto path = [&](const std::string& whole) {
            _paths.push_back(_folder + "/" + whole);
            return _paths.back();
        };
        switch (number % 20) {
        case 0:
            fs::create_symlink("document 000004.odt", path(name));
            break;
        case 1:
            fs::create_directory(path(name));
            break;
        case 2:
            std::ofstream(path(name + ".desktop"))
                << "[Desktop Entry]\nType=Application\nName=Editor\nExec=true\n";
            break;
        case 3:
            std::ofstream(path("." + name)).flush();
            break;
        default:
            std::ofstream(path(name + endings[number % endings.size()])).flush();
        }
    }

    std::string _folder;
    std::vector<std::string> _paths;
};

void askEverything(ZEFBasicInfoFileItem& item)
{
    benchmark::DoNotOptimize(item.fileName());
    benchmark::DoNotOptimize(item.displayName());
    benchmark::DoNotOptimize(item.uti());
    benchmark::DoNotOptimize(item.resolvedUTI());
    benchmark::DoNotOptimize(item.resolvedURL());
    benchmark::DoNotOptimize(item.resolvedPath());
    benchmark::DoNotOptimize(item.resolvedFile());
    benchmark::DoNotOptimize(item.isDirectory());
    benchmark::DoNotOptimize(item.isPackage());
    benchmark::DoNotOptimize(item.isApplication());
    benchmark::DoNotOptimize(item.isAlias());
    benchmark::DoNotOptimize(item.isRealFile());
    benchmark::DoNotOptimize(item.isInvisible());
    benchmark::DoNotOptimize(item.isRootDirectory());
    benchmark::DoNotOptimize(item.isVolumesDirectory());
}

constexpr double answersOfAnItem = 15;

void askEverything(const Items& items)
{
    for (const auto& item : items)
        askEverything(*zef::downcast<ZEFBasicInfoFileItem>(item.get()));
}

// The items exist, as in a window that shows the folder; what people see of them is not known yet.
void basicInfo(benchmark::State& state)
{
    const MixedFiles files(BenchmarkFolders::shared().withFiles(0) + "/mixed");
    GIOQuestions peer;
    if (!peer.isThere()) {
        state.SkipWithError("GLib is not there");
        return;
    }
    Comparison comparison(state);
    for (auto _ : state) {
        Items items;
        comparison.round([&] { peer.ask(files.paths()); }, [&] { items = files.items(); },
            [&] { askEverything(items); });
    }
}

void basicInfoAgain(benchmark::State& state)
{
    const MixedFiles files(BenchmarkFolders::shared().withFiles(0) + "/mixed again");
    const auto items = files.items();
    askEverything(items);
    for (auto _ : state)
        askEverything(items);
    state.counters["secondsAnAnswer"] = benchmark::Counter(
        static_cast<double>(fileCount) * answersOfAnItem,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(basicInfo)->Iterations(4)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(basicInfoAgain)->Iterations(20)->Unit(benchmark::kMillisecond);

} // namespace
