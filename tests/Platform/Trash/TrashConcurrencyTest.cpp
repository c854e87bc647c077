// SPDX-License-Identifier: MIT
#include "tests/support/ChildProcess.h"
#include "tests/support/TrashFixture.h"

#include <set>

#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::SizeIs;
using zef::TrashOutcome;

constexpr int count = 50;

/// Two processes that use the trash at the same time.
class TrashConcurrencyTest : public TrashFixture {
protected:
    /// Files "0", "1", ... in a new folder, as entries of a request.
    std::vector<zef::TrashEntry> files(const std::string& name)
    {
        std::vector<zef::TrashEntry> entries;
        folder.makeFolder(name);
        for (int number = 0; number < count; ++number) {
            const auto path = name + "/" + std::to_string(number);
            folder.write(path, path);
            entries.push_back(entry(path));
        }
        return entries;
    }

    /// Asks for each file by itself; the number of those that were moved.
    int trashOneByOne(const std::vector<zef::TrashEntry>& entries)
    {
        int moved = 0;
        for (const auto& each : entries)
            moved += trash({ each }) == TrashOutcome::moved;
        return moved;
    }

    /// Does `work` here and `childsWork` in another process; how many files each moved.
    template <typename Work, typename ChildsWork>
    std::pair<int, int> both(Work&& work, ChildsWork&& childsWork)
    {
        const auto child = ::fork();
        if (child == 0)
            ::_exit(childsWork());
        const int moved = work();
        int status = 0;
        ::waitpid(child, &status, 0);
        return { moved, WIFEXITED(status) ? WEXITSTATUS(status) : -1 };
    }
};

TEST_F(TrashConcurrencyTest, FilesOfTheSameNamesAllGetNamesOfTheirOwn)
{
    const auto mine = files("files/mine");
    const auto others = files("files/others");

    const auto moved = both(
        [&] { return trashOneByOne(mine); }, [&] { return trashOneByOne(others); });

    EXPECT_EQ(moved, std::pair(count, count));
    std::set<std::string> contents;
    for (const auto& name : trashed())
        contents.insert(folder.contents("data/Trash/files/" + name));
    EXPECT_THAT(contents, SizeIs(2 * count));
    EXPECT_THAT(infos(), SizeIs(2 * count));
}

TEST_F(TrashConcurrencyTest, TheSameFilesGoOnce)
{
    const auto shared = files("files/shared");
    const auto work = [&] { return trashOneByOne(shared); };

    const auto [mine, others] = both(work, work);

    EXPECT_EQ(mine + others, count);
    EXPECT_THAT(trashed(), SizeIs(count));
    EXPECT_THAT(infos(), SizeIs(count));
}

TEST_F(TrashConcurrencyTest, OfTwoRequestsForTheSameFilesNoneLosesOne)
{
    const auto shared = files("files/shared");
    const auto work = [&] { return trash(shared) == TrashOutcome::moved ? 1 : 0; };

    const auto [mine, others] = both(work, work);

    EXPECT_LE(mine + others, 1);
    std::set<std::string> contents;
    for (const auto* where : { "data/Trash/files", "files/shared" }) {
        for (const auto& name : namesIn(where))
            contents.insert(folder.contents(std::string(where) + "/" + name));
    }
    EXPECT_THAT(contents, SizeIs(count));
    EXPECT_EQ(trashed().size(), infos().size());
}

} // namespace
