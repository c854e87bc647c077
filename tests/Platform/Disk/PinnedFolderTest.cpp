// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/PinnedFolder.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <string>
#include <thread>

namespace {

class PinnedFolderTest : public testing::Test {
protected:
    PinnedFolderTest()
    {
        folder.makeFolder("inner");
        folder.write("inner/file");
        folder.write("outside");
    }

    zef::FSRef ref(const std::string& name)
    {
        zef::Stat stat;
        EXPECT_EQ(look(name, stat), 0);
        return zef::FSRef(stat);
    }

    int look(const std::string& name, zef::Stat& stat)
    {
        return zef::FileSystem::system().statLink(folder.path(name).c_str(), stat);
    }

    int look(const std::string& name)
    {
        zef::Stat stat;
        return look(name, stat);
    }

    void makeView() { view.emplace(ref("inner"), folder.folderUrl("inner")); }

    TemporaryFolder folder;
    std::optional<zef::PinnedFolder> view;
};

TEST_F(PinnedFolderTest, LooksAtEntriesAsTheyAre)
{
    makeView();
    EXPECT_EQ(look("inner/file"), 0);

    folder.remove("inner/file");

    EXPECT_EQ(look("inner/file"), ENOENT);
    EXPECT_EQ(look("inner"), 0);
    EXPECT_EQ(look("outside"), 0);
}

TEST_F(PinnedFolderTest, SeesTheFolderThatWasThereWhenItWasMade)
{
    makeView();
    folder.rename("inner", "renamed");

    EXPECT_EQ(look("inner/file"), 0);
    EXPECT_EQ(look("inner"), ENOENT);
    view.reset();
    EXPECT_EQ(look("inner/file"), ENOENT);
}

TEST_F(PinnedFolderTest, DoesNotServeWhilePaused)
{
    makeView();
    folder.rename("inner", "renamed");
    {
        const zef::PinnedFolder::Pause pause;
        EXPECT_EQ(look("inner/file"), ENOENT);
    }

    EXPECT_EQ(look("inner/file"), 0);
}

TEST_F(PinnedFolderTest, DoesNotServeOtherThreads)
{
    makeView();
    folder.rename("inner", "renamed");
    int result = 0;
    std::thread([&] { result = look("inner/file"); }).join();

    EXPECT_EQ(result, ENOENT);
}

TEST_F(PinnedFolderTest, IsOfNothingWhenAnotherFolderIsThere)
{
    const auto former = ref("inner");
    folder.rename("inner", "renamed");
    folder.makeFolder("inner");
    view.emplace(former, folder.folderUrl("inner"));

    EXPECT_EQ(look("inner/file"), ENOENT);
    EXPECT_EQ(look("renamed/file"), 0);
}

TEST_F(PinnedFolderTest, GivesTheOuterOneBack)
{
    folder.makeFolder("other");
    makeView();
    folder.rename("inner", "renamed");
    {
        const zef::PinnedFolder inner(ref("other"), folder.folderUrl("other"));
        EXPECT_EQ(look("inner/file"), ENOENT);
    }

    EXPECT_EQ(look("inner/file"), 0);
}

} // namespace
