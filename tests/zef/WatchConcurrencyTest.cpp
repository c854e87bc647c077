// SPDX-License-Identifier: MIT
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ZefProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <map>
#include <random>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

/// Which file is where: the names by the inode numbers.
using Files = std::map<std::uint64_t, std::string>;

std::uint64_t inodeOf(const fs::path& path)
{
    struct stat info { };
    return ::lstat(path.c_str(), &info) == 0 ? info.st_ino : 0;
}

Files filesIn(const fs::path& folder)
{
    Files files;
    for (const auto& entry : fs::directory_iterator(folder))
        files[inodeOf(entry)] = entry.path().filename();
    return files;
}

/// A program that makes, writes, renames, moves, replaces and removes files as chance will have it.
class Meddling {
public:
    Meddling(fs::path watched, fs::path elsewhere)
        : _watched(std::move(watched))
        , _elsewhere(std::move(elsewhere))
    {
    }

    void doOne()
    {
        const auto file = _watched / name();
        const auto other = (number(3) ? _watched : _elsewhere) / name();
        std::error_code ignored;
        switch (number(7)) {
        case 0:
            std::ofstream(file, std::ios::app) << 'x';
            break;
        case 1:
            fs::remove(file, ignored);
            break;
        case 2:
            fs::rename(file, other, ignored);
            break;
        case 3:
            fs::rename(_elsewhere / name(), file, ignored);
            break;
        case 4:
            fs::create_directory(file, ignored);
            break;
        case 5:
            fs::create_symlink("nowhere", file, ignored);
            break;
        case 6:
            std::ofstream(_elsewhere / "new") << "new";
            fs::rename(_elsewhere / "new", file, ignored);
            break;
        }
    }

private:
    std::size_t number(std::size_t limit) { return _engine() % limit; }
    std::string name() { return std::to_string(number(40)); }

    fs::path _watched;
    fs::path _elsewhere;
    std::minstd_rand _engine{ 20010101 };
};

/// What a run of `zef watch --json` tells, put together. It loads in the background, so that it
/// tells also of what is there at the beginning.
class Watcher {
public:
    explicit Watcher(const std::string& folder)
        : _process({ "watch", "--interval", "0.02", "--async", "--json", folder })
        , _folder(folder)
    {
    }

    /// Takes in what it tells until it tells this of the file with that name.
    void takeInUntil(const std::string& event, const std::string& name)
    {
        for (bool isTold = false; !isTold;) {
            const auto line = _process.nextLine();
            ASSERT_TRUE(line) << _process.errorText();
            const auto changes = nlohmann::json::parse(*line)["changes"];
            for (const auto& record : changes) {
                const auto told = takeIn(record);
                isTold |= record["name"] == event && told == name;
            }
        }
    }

    Files files() const
    {
        Files files;
        for (const auto& [id, file] : _files)
            files.insert(file);
        return files;
    }

private:
    /// The name of the record's file, also of one that is gone.
    std::string takeIn(const nlohmann::json& record)
    {
        const auto& file = record["file"];
        const auto id = file["id"].get<std::uint64_t>();
        const auto former = _files[id].second;
        if (record["name"] == "removed" || record["name"] == "moved" || file["path"] == _folder) {
            _files.erase(id);
            return former;
        }
        const auto name = fs::path(file["path"].get<std::string>()).filename().string();
        _files[id] = { file["inode"].get<std::uint64_t>(), name };
        return name;
    }

    ZefProcess _process;
    std::string _folder;
    std::map<std::uint64_t, std::pair<std::uint64_t, std::string>> _files;
};

/// Several programs that watch a folder while another changes it.
class WatchConcurrencyTest : public testing::Test {
protected:
    WatchConcurrencyTest()
    {
        folder.makeFolder("watched");
        folder.makeFolder("elsewhere");
    }

    TemporaryFolder folder;
};

TEST_F(WatchConcurrencyTest, EveryProgramKnowsInTheEndWhatIsThere)
{
    const auto watched = folder.path("watched");
    Watcher one(watched);
    Watcher other(watched);
    folder.write("watched/begin");
    for (auto* each : { &one, &other })
        each->takeInUntil("appeared", "begin");

    runInChildProcess([&] {
        Meddling meddling(watched, folder.path("elsewhere"));
        for (int count = 0; count < 4000; ++count)
            meddling.doOne();
    });
    ASSERT_FALSE(HasFailure());

    // The poll that tells of the end's removal began after everything else.
    folder.write("watched/end");
    for (auto* each : { &one, &other })
        each->takeInUntil("appeared", "end");
    folder.remove("watched/end");
    for (auto* each : { &one, &other }) {
        each->takeInUntil("removed", "end");
        EXPECT_EQ(each->files(), filesIn(watched));
    }
}

} // namespace
