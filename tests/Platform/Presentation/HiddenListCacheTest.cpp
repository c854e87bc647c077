// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/HiddenListCache.h"

#include "tests/support/LogRecorder.h"
#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class HiddenListCacheTest : public testing::Test {
protected:
    ~HiddenListCacheTest() override { EXPECT_TRUE(log.lines().empty()); }

    bool hides(std::string_view name) { return lists.hides(folder.url(name)); }

    TemporaryFolder folder;
    LogRecorder log;
    // Stands years away from the files' stamps, which makes every list one that nobody has touched
    // for long.
    SteppedClock clock;
    zef::HiddenListCache lists{ clock };
};

TEST_F(HiddenListCacheTest, HidesNamesThatBeginWithADot)
{
    EXPECT_TRUE(hides(".profile"));
    EXPECT_TRUE(hides(".hidden"));
    EXPECT_FALSE(hides("profile"));
    EXPECT_FALSE(hides("profile."));
    EXPECT_FALSE(hides("backup~"));
}

TEST_F(HiddenListCacheTest, HidesWhatTheFolderLists)
{
    folder.write(".hidden", "one\nfolder\n");
    folder.makeFolder("folder");

    EXPECT_TRUE(hides("one"));
    EXPECT_TRUE(lists.hides(folder.folderUrl("folder")));
    EXPECT_FALSE(hides("two"));
    EXPECT_FALSE(hides("folder/one"));
}

TEST_F(HiddenListCacheTest, NeverHidesTheRootNorNil)
{
    EXPECT_FALSE(lists.hides(zef::FileURL::fromPath("/", zef::URLKind::folder)));
    EXPECT_FALSE(lists.hides(nullptr));
}

TEST_F(HiddenListCacheTest, ReadsAListAnewAsSoonAsItChanges)
{
    zef::HiddenListCache listsByOurClock;
    for (int round = 0; round < 50; ++round) {
        folder.write(".hidden", round % 2 ? "one\n" : "two\n");
        EXPECT_EQ(listsByOurClock.hides(folder.url("one")), round % 2 == 1);
        EXPECT_EQ(listsByOurClock.hides(folder.url("two")), round % 2 == 0);
    }
    folder.remove(".hidden");
    EXPECT_FALSE(listsByOurClock.hides(folder.url("one")));
}

TEST_F(HiddenListCacheTest, NoticesThatAListItRemembersChanges)
{
    folder.write(".hidden", "one\n");
    EXPECT_TRUE(hides("one"));
    EXPECT_FALSE(hides("three"));

    folder.write(".hidden", "one\nthree\n");
    EXPECT_TRUE(hides("three"));

    folder.remove(".hidden");
    EXPECT_FALSE(hides("one"));
}

TEST_F(HiddenListCacheTest, NoticesAListThatIsPutInTheOldOnesPlace)
{
    folder.write(".hidden", "one\n");
    EXPECT_TRUE(hides("one"));
    folder.write("new", "two\n");

    folder.rename("new", ".hidden");

    EXPECT_FALSE(hides("one"));
    EXPECT_TRUE(hides("two"));
}

TEST_F(HiddenListCacheTest, KeepsManyFoldersApart)
{
    for (int round = 0; round < 2; ++round) {
        for (int index = 0; index < 30; ++index) {
            const auto name = std::to_string(index);
            if (!round) {
                folder.makeFolder(name);
                folder.write(name + "/.hidden", name + "\n");
            }
            EXPECT_TRUE(hides(name + "/" + name));
            EXPECT_FALSE(hides(name + "/x" + name));
        }
    }
}

TEST_F(HiddenListCacheTest, HidesNothingByAListThatIsNoRegularFile)
{
    folder.makeFolder(".hidden");
    EXPECT_FALSE(hides("one"));
    folder.remove(".hidden");

    ASSERT_EQ(::mkfifo(folder.path(".hidden").c_str(), 0666), 0);
    EXPECT_FALSE(hides("one"));
    folder.remove(".hidden");

    folder.write("list", "one\n");
    folder.symlink("list", ".hidden");
    EXPECT_FALSE(hides("one"));
    folder.remove(".hidden");

    folder.symlink(".hidden", ".hidden");
    EXPECT_FALSE(hides("one"));
}

TEST_F(HiddenListCacheTest, ReadsAListOf64KiBAndNoLargerOne)
{
    std::string text = "one\n";
    text.resize(65536, 'x');
    folder.write(".hidden", text);
    EXPECT_TRUE(hides("one"));

    folder.write(".hidden", text + "x");
    EXPECT_FALSE(hides("one"));
}

TEST_F(HiddenListCacheTest, HidesNothingByAListOfAGigabyte)
{
    folder.write(".hidden", "one\n");
    ASSERT_EQ(::truncate(folder.path(".hidden").c_str(), 1 << 30), 0);

    EXPECT_FALSE(hides("one"));
}

TEST_F(HiddenListCacheTest, HidesNothingByAListThatMayNotBeRead)
{
    folder.write(".hidden", "one\n");
    folder.chmod(".hidden", 0);
    {
        const WithoutPrivileges plain;
        EXPECT_FALSE(hides("one"));
    }
    folder.chmod(".hidden", 0600);
    EXPECT_TRUE(hides("one"));
}

TEST_F(HiddenListCacheTest, FollowsLinksToTheFolder)
{
    folder.makeFolder("real");
    folder.write("real/.hidden", "one\n");
    folder.symlink("real", "link");

    EXPECT_TRUE(hides("link/one"));
    EXPECT_FALSE(hides("link/two"));
}

TEST_F(HiddenListCacheTest, AnswersManyThreadsAtOnce)
{
    folder.write(".hidden", "one\n");
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([this] {
            for (int round = 0; round < 500; ++round) {
                EXPECT_TRUE(hides("one"));
                EXPECT_FALSE(hides("two"));
            }
        });
    for (auto& thread : threads)
        thread.join();
}

} // namespace
