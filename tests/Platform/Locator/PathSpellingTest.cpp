// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/PathSpelling.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

class PathSpellingTest : public testing::Test {
protected:
    PathSpellingTest()
    {
        folder.makeFolder("real");
        folder.makeFolder("real/inner");
        folder.symlink("real", "link");
    }

    // From now on the folder is known by this name.
    void know(std::string_view name)
    {
        zef::Stat stat;
        zef::FileSystem::system().statLink((folder.path(name) + "/").c_str(), stat);
        _known[stat.inode] = folder.folderUrl(name);
    }

    zef::FileURL spell(const zef::FileURL& found, const zef::FileURL& lastKnown)
    {
        zef::PathSpelling spelling(lastKnown, [this](const zef::Stat& stat) {
            const auto known = _known.find(stat.inode);
            return known == _known.end() ? zef::FileURL() : known->second;
        });
        return spelling.spell(found);
    }

    TemporaryFolder folder;

private:
    std::map<std::uint64_t, zef::FileURL> _known;
};

TEST_F(PathSpellingTest, LeavesAPathWithoutLinksAsItIs)
{
    const auto found = folder.url("real/new");

    EXPECT_EQ(spell(found, folder.url("real/old")), found);
    EXPECT_EQ(spell(found, folder.url("real/inner/old")), found);
    EXPECT_EQ(spell(found, folder.url("missing/folder/old")), found);
    EXPECT_EQ(spell(found, nullptr), found);
}

TEST_F(PathSpellingTest, KeepsTheLinkOfTheFolder)
{
    EXPECT_EQ(spell(folder.url("real/new"), folder.url("link/old")), folder.url("link/new"));
}

TEST_F(PathSpellingTest, KeepsTheLinkFurtherUp)
{
    EXPECT_EQ(
        spell(folder.url("real/inner/new"), folder.url("link/old")), folder.url("link/inner/new"));
    EXPECT_EQ(spell(folder.url("real/new"), folder.url("link/inner/old")), folder.url("link/new"));
}

TEST_F(PathSpellingTest, KeepsTheLinkWhenTheFolderBelowItWasRenamed)
{
    folder.rename("real/inner", "real/other");

    EXPECT_EQ(spell(folder.url("real/other/new"), folder.url("link/inner/old")),
        folder.url("link/other/new"));
}

TEST_F(PathSpellingTest, KeepsTheMarkOfAFolder)
{
    EXPECT_EQ(spell(folder.folderUrl("real/inner/new"), folder.url("link/old")),
        folder.folderUrl("link/inner/new"));
}

TEST_F(PathSpellingTest, SpellsAFolderAsItIsKnown)
{
    know("link/inner");

    EXPECT_EQ(
        spell(folder.url("real/inner/new"), folder.url("elsewhere")), folder.url("link/inner/new"));
    EXPECT_EQ(spell(folder.url("real/inner/new"), nullptr), folder.url("link/inner/new"));
}

TEST_F(PathSpellingTest, PrefersTheDeeperFolder)
{
    folder.symlink("real/inner", "deep");
    know("deep");

    EXPECT_EQ(spell(folder.url("real/inner/new"), folder.url("link/old")), folder.url("deep/new"));
}

TEST_F(PathSpellingTest, PrefersTheLastSpellingOfTheObjectToThatOfOthers)
{
    folder.symlink("real", "second");
    know("second");

    EXPECT_EQ(spell(folder.url("real/new"), folder.url("link/old")), folder.url("link/new"));
}

TEST_F(PathSpellingTest, KeepsALinkThatLeadsBackUp)
{
    folder.symlink(".", "real/self");

    EXPECT_EQ(
        spell(folder.url("real/new"), folder.url("real/self/old")), folder.url("real/self/new"));
}

TEST_F(PathSpellingTest, SpellsTheRootAsItIs)
{
    const auto root = zef::FileURL::fromPath("/", zef::URLKind::folder);

    EXPECT_EQ(spell(root, folder.url("link/old")), root);
}

} // namespace
