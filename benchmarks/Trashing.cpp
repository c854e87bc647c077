// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/Trash.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "benchmarks/support/Comparison.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

/// Files to be trashed, and a home trash of their own beside them.
class TrashedFiles {
public:
    explicit TrashedFiles(std::size_t count)
        : _count(count)
    {
        makeFiles();
    }

    /// New files, after those before have gone; the trash is empty then.
    void makeFiles()
    {
        for (const auto* name : { "files", "data" }) {
            if (_folder.exists(name))
                _folder.remove(name);
        }
        for (const auto* name :
            { "files", "data", "data/Trash", "data/Trash/files", "data/Trash/info" })
            _folder.makeFolder(name);
        for (std::size_t number = 0; number < _count; ++number)
            _folder.write("files/" + nameOf(number), "");
        ::sync();
    }

    std::vector<zef::TrashEntry> entries() const
    {
        std::vector<zef::TrashEntry> all;
        for (std::size_t number = 0; number < _count; ++number) {
            const auto url = _folder.url("files/" + nameOf(number));
            zef::Stat stat;
            zef::FileSystem::system().statLink(url.path().c_str(), stat);
            all.push_back({ zef::FSRef(stat), url });
        }
        return all;
    }

    /// What nobody can do without: the records, a wait until they are safe, the moves.
    void trashByHand() const
    {
        constexpr std::string_view text
            = "[Trash Info]\nPath=/tmp/folder/files/name0001\nDeletionDate=2026-01-01T00:00:00\n";
        const int files = open("files", O_PATH);
        const int trash = open("data/Trash/files", O_PATH);
        const int info = open("data/Trash/info", O_RDONLY);
        for (std::size_t number = 0; number < _count; ++number) {
            const int record = ::openat(info, (nameOf(number) + ".trashinfo").c_str(),
                O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
            benchmark::DoNotOptimize(::write(record, text.data(), text.size()));
            ::close(record);
        }
        ::syncfs(info);
        for (std::size_t number = 0; number < _count; ++number) {
            const auto name = nameOf(number);
            ::renameat2(files, name.c_str(), trash, name.c_str(), RENAME_NOREPLACE);
        }
        for (const int folder : { files, trash, info })
            ::close(folder);
    }

    /// NO when there is no such program.
    bool trashByGIO() const
    {
        const auto command = "gio trash '" + _folder.path("files") + "'/* 2>/dev/null";
        return std::system(command.c_str()) == 0; // NOLINT(*-env33-c)
    }

private:
    static std::string nameOf(std::size_t number)
    {
        return "name" + std::to_string(10000 + number);
    }

    int open(const char* name, int flags) const
    {
        return ::open(_folder.path(name).c_str(), flags | O_DIRECTORY | O_CLOEXEC);
    }

    std::size_t _count;
    TemporaryFolder _folder;
    EnvironmentVariable _dataHome{ "XDG_DATA_HOME", _folder.path("data") };
};

double processorSecondsOfChildren()
{
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

template <typename Work> double realSeconds(Work&& work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// One request without the pause after it. Beside processor times stand real ones, because this
// waits for the disk; GIO doesn't.
void trashing(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    TrashedFiles files(count);
    std::vector<zef::TrashEntry> entries;
    zef::TrashRefusal refusal;
    auto outcome = zef::TrashOutcome::moved;
    double real = 0;
    double realOfGIO = 0;
    double gio = 0;
    bool hasGIO = false;

    Comparison comparison(state);
    for (auto _ : state) {
        files.makeFiles();
        comparison.round([&] { files.trashByHand(); },
            [&] {
                files.makeFiles();
                entries = files.entries();
            },
            [&] {
                real += realSeconds(
                    [&] { outcome = zef::Trash::system().moveToTrash(entries, refusal); });
            });
        if (outcome != zef::TrashOutcome::moved) {
            state.SkipWithError(refusal.reason.c_str());
            break;
        }
        files.makeFiles();
        const auto before = processorSecondsOfChildren();
        realOfGIO += realSeconds([&] { hasGIO = files.trashByGIO(); });
        gio += processorSecondsOfChildren() - before;
    }
    const auto mean = benchmark::Counter::kAvgIterations;
    state.counters["real"] = benchmark::Counter(real, mean);
    if (!hasGIO)
        return;
    state.counters["gioReal"] = benchmark::Counter(realOfGIO, mean);
    state.counters["gio"] = benchmark::Counter(gio, mean);
}

BENCHMARK(trashing)->Arg(1000)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
