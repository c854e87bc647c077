// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include "tests/support/TrashFixture.h"

#include <regex>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::TrashOutcome;

/// Moving to the home trash.
class TrashTest : public TrashFixture {
protected:
    std::string recordedPath(const std::string& name) const
    {
        std::smatch match;
        const auto text = info(name);
        const std::regex line("\\[Trash Info\\]\nPath=([^\n]*)\nDeletionDate="
                              "\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
        return std::regex_match(text, match, line) ? match[1].str() : text;
    }

    mode_t modeOf(std::string_view name) const
    {
        struct stat info { };
        EXPECT_EQ(::lstat(folder.path(name).c_str(), &info), 0) << name;
        return info.st_mode & 07777;
    }
};

TEST_F(TrashTest, MovesAFileAndRecordsWhereItWas)
{
    folder.write("files/a.txt", "some text");

    EXPECT_EQ(trash(Names{ "files/a.txt" }), TrashOutcome::moved);

    EXPECT_THAT(namesIn("files"), IsEmpty());
    EXPECT_EQ(folder.contents("data/Trash/files/a.txt"), "some text");
    EXPECT_EQ(recordedPath("a.txt"), folder.path("files/a.txt"));
    EXPECT_EQ(refusal.error, 0);
}

TEST_F(TrashTest, MovesTheVeryFile)
{
    folder.write("files/a");
    const auto before = entry("files/a");

    trash(Names{ "files/a" });

    EXPECT_TRUE(before.ref.hasNumbersOf(entry("data/Trash/files/a").ref));
}

TEST_F(TrashTest, MakesTheTrashForTheUserAlone)
{
    folder.write("files/a");

    trash(Names{ "files/a" });

    for (const auto* name : { "data/Trash", "data/Trash/files", "data/Trash/info" })
        EXPECT_EQ(modeOf(name), 0700u) << name;
    EXPECT_EQ(modeOf("data/Trash/info/a.trashinfo"), 0600u);
}

TEST_F(TrashTest, TakesAnEmptyRequestForDone)
{
    EXPECT_EQ(trash(Names{}), TrashOutcome::moved);
}

TEST_F(TrashTest, MovesAFolderWithItsContents)
{
    folder.makeFolder("files/d");
    folder.makeFolder("files/d/e");
    folder.write("files/d/e/f", "deep");

    EXPECT_EQ(trash(Names{ "files/d" }), TrashOutcome::moved);

    EXPECT_EQ(folder.contents("data/Trash/files/d/e/f"), "deep");
    EXPECT_THAT(infos(), ElementsAre("d.trashinfo"));
}

TEST_F(TrashTest, MovesALinkItselfAlsoOneThatLeadsNowhere)
{
    folder.write("files/target");
    folder.symlink("target", "files/link");
    folder.symlink("nowhere", "files/dangling");

    EXPECT_EQ(trash(Names{ "files/link", "files/dangling" }), TrashOutcome::moved);

    EXPECT_THAT(namesIn("files"), ElementsAre("target"));
    EXPECT_EQ(std::filesystem::read_symlink(folder.path("data/Trash/files/link")), "target");
    EXPECT_EQ(std::filesystem::read_symlink(folder.path("data/Trash/files/dangling")), "nowhere");
}

TEST_F(TrashTest, RecordsThePathWithoutTheLinksThatLedThere)
{
    folder.write("files/a");
    folder.symlink("files", "shortcut");

    EXPECT_EQ(trash(Names{ "shortcut/a" }), TrashOutcome::moved);

    EXPECT_EQ(recordedPath("a"), folder.path("files/a"));
}

TEST_F(TrashTest, GivesFilesOfOneNameNumbers)
{
    for (const auto* name : { "files/a", "files/b", "files/c" }) {
        folder.makeFolder(name);
        folder.write(std::string(name) + "/same.txt", name);
    }

    EXPECT_EQ(trash(Names{ "files/a/same.txt", "files/b/same.txt" }), TrashOutcome::moved);
    EXPECT_EQ(trash(Names{ "files/c/same.txt" }), TrashOutcome::moved);

    EXPECT_THAT(trashed(), ElementsAre("same.2.txt", "same.3.txt", "same.txt"));
    EXPECT_EQ(folder.contents("data/Trash/files/same.3.txt"), "files/c");
    EXPECT_EQ(recordedPath("same.2.txt"), folder.path("files/b/same.txt"));
}

TEST_F(TrashTest, LeavesAloneWhatLiesInTheTrashWithoutARecord)
{
    folder.write("files/a", "first");
    trash(Names{ "files/a" });
    folder.remove("data/Trash/info/a.trashinfo");
    folder.write("files/a", "second");

    EXPECT_EQ(trash(Names{ "files/a" }), TrashOutcome::moved);

    EXPECT_EQ(folder.contents("data/Trash/files/a"), "first");
    EXPECT_EQ(folder.contents("data/Trash/files/a.2"), "second");
    EXPECT_THAT(infos(), ElementsAre("a.2.trashinfo"));
}

TEST_F(TrashTest, TakesNamesOf255Bytes)
{
    const auto name = std::string(251, 'n') + ".txt";
    folder.write("files/" + name);

    EXPECT_EQ(trash(Names{ "files/" + name }), TrashOutcome::moved);

    EXPECT_THAT(trashed(), ElementsAre(std::string(241, 'n') + ".txt"));
    EXPECT_EQ(recordedPath(trashed().at(0)), folder.path("files/" + name));
}

TEST_F(TrashTest, TakesNamesThatAreNoText)
{
    folder.write("files/new\nline");
    folder.write("files/bad\xff\xfe");

    EXPECT_EQ(trash(Names{ "files/new\nline", "files/bad\xff\xfe" }), TrashOutcome::moved);

    EXPECT_THAT(trashed(), ElementsAre("bad\xff\xfe", "new\nline"));
    EXPECT_EQ(recordedPath("new\nline"), folder.path("files/new%0Aline"));
    EXPECT_EQ(recordedPath("bad\xff\xfe"), folder.path("files/bad%FF%FE"));
}

TEST_F(TrashTest, FindsAFileThatWasMovedMeanwhile)
{
    folder.write("files/a");
    auto moved = entry("files/a");
    const auto former = moved.lastKnown;
    zef::Locator::shared().retain(moved.ref, former);
    folder.rename("files/a", "files/b");

    const auto outcome = trash({ moved });
    zef::Locator::shared().release(moved.ref);

    EXPECT_EQ(outcome, TrashOutcome::moved);
    EXPECT_EQ(recordedPath("b"), folder.path("files/b"));
}

TEST_F(TrashTest, MovesWhatIsAskedForTwiceOnce)
{
    folder.write("files/a");

    EXPECT_EQ(trash(Names{ "files/a", "files/a" }), TrashOutcome::moved);

    EXPECT_THAT(trashed(), ElementsAre("a"));
}

TEST_F(TrashTest, LetsAFileGoWithItsFolder)
{
    folder.makeFolder("files/d");
    folder.write("files/d/a");

    EXPECT_EQ(trash(Names{ "files/d/a", "files/d" }), TrashOutcome::moved);

    EXPECT_THAT(trashed(), ElementsAre("d"));
    EXPECT_TRUE(folder.exists("data/Trash/files/d/a"));
    EXPECT_THAT(infos(), ElementsAre("d.trashinfo"));
}

TEST_F(TrashTest, MovesFilesOutOfMoreFoldersThanItMayOpen)
{
    constexpr int count = 60;
    Names names;
    for (int number = 0; number < count; ++number) {
        const auto name = "files/" + std::to_string(number);
        folder.makeFolder(name);
        names.push_back(name + "/f" + std::to_string(number));
        folder.write(names.back());
    }
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
    const rlimit few{ namesAt("/proc/self/fd").size() + 20, former.rlim_max };
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);

    const auto outcome = trash(names);

    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &former), 0);
    EXPECT_EQ(outcome, TrashOutcome::moved) << refusal.reason;
    EXPECT_THAT(trashed(), SizeIs(count));
    EXPECT_THAT(infos(), SizeIs(count));
}

TEST_F(TrashTest, LeavesNoDescriptorOpen)
{
    folder.write("files/a");
    const auto before = namesAt("/proc/self/fd").size();

    trash(Names{ "files/a" });

    EXPECT_EQ(namesAt("/proc/self/fd").size(), before);
}

TEST_F(TrashTest, FollowsTheUsersOwnLinkToTheTrash)
{
    folder.makeFolder("data");
    folder.makeFolder("bin");
    folder.symlink("../bin", "data/Trash");
    folder.write("files/a");

    EXPECT_EQ(trash(Names{ "files/a" }), TrashOutcome::moved);

    EXPECT_THAT(namesIn("bin/files"), ElementsAre("a"));
}

TEST_F(TrashTest, UsesTheHomeFolderWhereNothingElseIsSaid)
{
    folder.write("files/a");
    dataHome.set("relative");
    const EnvironmentVariable home("HOME", folder.path());

    EXPECT_EQ(trash(Names{ "files/a" }), TrashOutcome::moved);

    EXPECT_THAT(namesIn(".local/share/Trash/files"), ElementsAre("a"));
}

} // namespace
