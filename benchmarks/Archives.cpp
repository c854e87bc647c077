// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "benchmarks/support/BenchmarkFolders.h"
#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Floors.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Dictionaries = zef::Array<ZEFArchiveDictionary>;

// Archives of files whose items are gone, as if an earlier run of the program had made them, and
// the paths where the files are now. The names keep the length of those in other benchmarks.
class ArchivedFiles {
public:
    ArchivedFiles(const std::string& folder, std::size_t count)
        : _folder(folder)
    {
        fs::create_directory(_folder);
        for (std::size_t number = 0; number < count; ++number)
            std::ofstream(path("archived file ", number)).flush();
        waitUntilTheirBirthIsLongAgo();
        for (std::size_t number = 0; number < count; ++number) {
            places.push_back(path("archived file ", number));
            const auto item = ZEFFileItem::classObject.newFileItemForPath(places.back());
            archives->addObject(item->archiveDictionary());
        }
    }

    ~ArchivedFiles() { fs::remove_all(_folder); }
    ArchivedFiles(const ArchivedFiles&) = delete;
    ArchivedFiles& operator=(const ArchivedFiles&) = delete;

    void renameFiles()
    {
        for (std::size_t number = 0; number < places.size(); ++number) {
            const auto renamed = path("renamed files ", number);
            fs::rename(places[number], renamed);
            places[number] = renamed;
        }
    }

    void renameFolder()
    {
        const auto former = std::exchange(_folder, _folder + " renamed");
        fs::rename(former, _folder);
        for (auto& place : places)
            place.replace(0, former.size(), _folder);
    }

    void deleteFiles() { fs::remove_all(_folder); }

    zef::Ref<Dictionaries> archives = zef::makeRef<Dictionaries>();
    std::vector<std::string> places;

private:
    std::string path(std::string_view prefix, std::size_t number) const
    {
        const auto digits = std::to_string(1000000 + number).substr(1);
        return _folder + "/" + std::string(prefix) + digits;
    }

    // An archive of a file that was made within the same tick as another may have to ask more.
    void waitUntilTheirBirthIsLongAgo()
    {
        const auto last = fs::last_write_time(path("archived file ", 0));
        while (fs::file_time_type::clock::now() - last < std::chrono::milliseconds(200)) { }
    }

    std::string _folder;
};

enum class Fate { unchanged, filesRenamed, folderRenamed, filesDeleted };

void meet(ArchivedFiles& files, Fate fate)
{
    if (fate == Fate::filesRenamed)
        files.renameFiles();
    else if (fate == Fate::folderRenamed)
        files.renameFolder();
    else if (fate == Fate::filesDeleted)
        files.deleteFiles();
}

// Made once for all repetitions.
const ArchivedFiles& archivedFiles(Fate fate, std::size_t count)
{
    static std::map<std::pair<Fate, std::size_t>, std::unique_ptr<ArchivedFiles>> all;
    auto& files = all[{ fate, count }];
    if (!files) {
        const auto& folder = BenchmarkFolders::shared().withFiles(0);
        files = std::make_unique<ArchivedFiles>(
            folder + "/archives " + std::to_string(all.size()), count);
        meet(*files, fate);
    }
    return *files;
}

// From archives to items. That they are let go again is not timed.
void resolving(benchmark::State& state, Fate fate)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto& files = archivedFiles(fate, count);
    const auto found = fate == Fate::filesDeleted ? 0 : count;

    Comparison comparison(state);
    for (auto _ : state) {
        zef::Ref<zef::Array<ZEFFileItem>> items;
        comparison.round([&] { benchmark::DoNotOptimize(statByHand(files.places)); },
            [&] {
                items = ZEFFileItem::classObject.fileItemsForArchiveDictionaries(
                    files.archives.get());
            });
        if (items->count() != found) {
            state.SkipWithError("not every archive led to its file");
            break;
        }
    }
}

BENCHMARK_CAPTURE(resolving, unchanged, Fate::unchanged)
    ->Arg(10000)
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resolving, filesRenamed, Fate::filesRenamed)
    ->Arg(10000)
    ->Iterations(2)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resolving, folderRenamed, Fate::folderRenamed)
    ->Arg(10000)
    ->Iterations(2)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resolving, filesDeleted, Fate::filesDeleted)
    ->Arg(100)
    ->Arg(1000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
