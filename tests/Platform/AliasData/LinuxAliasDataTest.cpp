// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/LinuxAliasData.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include "tests/support/AliasBytes.h"
#include "tests/support/AliasFixture.h"
#include "tests/support/Privileges.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

class LinuxAliasDataTest : public AliasFixture {
protected:
    // Where the process may open files by their handles it knows at once that one is gone.
    bool mayOpen() const { return mayOpenByHandle(folder.path()); }
};

INSTANTIATE_TEST_SUITE_P(
    , LinuxAliasDataTest, testing::ValuesIn(aliasCircumstances()), nameOfAliasCircumstance);

TEST_P(LinuxAliasDataTest, LeadsToAFileThatStayedWhereItWas)
{
    folder.makeFolder("folder");
    const auto file = folder.write("folder/file");

    EXPECT_EQ(resolve(aliasOf(file)), file);
}

TEST_P(LinuxAliasDataTest, TellsAReferenceToTheFile)
{
    const auto file = folder.write("file");
    const auto ref = resolvedRef(aliasOf(file));

    EXPECT_TRUE(ref.hasNumbersOf(stat(file)));
    EXPECT_EQ(ref.parentInode(), stat(folder.folderUrl()).inode);
    EXPECT_EQ(ref.hasHandle(), zef::FileSystem::system().handle(file.path().c_str()).isKnown());
}

TEST_P(LinuxAliasDataTest, LeadsToAFolderWithASlashAtTheEnd)
{
    const auto made = folder.makeFolder("folder");
    const auto alias = aliasOf(made);
    EXPECT_EQ(resolve(alias), folder.folderUrl("folder"));
    folder.rename("folder", "renamed");

    EXPECT_EQ(resolve(alias), folder.folderUrl("renamed"));
}

TEST_P(LinuxAliasDataTest, FindsARenamedFile)
{
    const auto alias = aliasOf(folder.write("file"));
    folder.write("another");

    const auto renamed = folder.rename("file", "renamed");
    EXPECT_EQ(resolve(alias), renamed);
}

TEST_P(LinuxAliasDataTest, FindsAFileAmongManyOthersAfterARename)
{
    for (int number = 0; number < 1000; ++number)
        folder.write("file " + std::to_string(number));
    const auto alias = aliasOf("file 500");

    const auto renamed = folder.rename("file 500", "renamed");
    EXPECT_EQ(resolve(alias), renamed);
}

TEST_P(LinuxAliasDataTest, FindsAFileWhoseNameIsAnyBytes)
{
    const auto alias = aliasOf(folder.write("line\nend \xff\xfe (deleted)"));

    EXPECT_EQ(resolve(alias), folder.url("line\nend \xff\xfe (deleted)"));
    const auto renamed = folder.rename("line\nend \xff\xfe (deleted)", "\xff\n");
    EXPECT_EQ(resolve(alias), renamed);
}

TEST_P(LinuxAliasDataTest, FindsAFileThatWasMovedToAFolderNobodyKnows)
{
    folder.makeFolder("one");
    folder.makeFolder("two");
    folder.makeFolder("two/three");
    const auto alias = aliasOf(folder.write("one/file"));

    const auto renamed = folder.rename("one/file", "two/three/renamed");
    EXPECT_EQ(resolve(alias), renamed);
}

TEST_P(LinuxAliasDataTest, FindsAFileWhoseFoldersWereRenamed)
{
    folder.makeFolder("one");
    folder.makeFolder("one/two");
    const auto alias = aliasOf(folder.write("one/two/file"));
    folder.rename("one/two/file", "one/two/renamed");
    folder.rename("one/two", "one/zwei");
    folder.rename("one", "eins");

    EXPECT_EQ(resolve(alias), folder.url("eins/zwei/renamed"));
}

TEST_P(LinuxAliasDataTest, FindsAFileWhoseFolderWasMoved)
{
    folder.makeFolder("one");
    folder.makeFolder("one/two");
    folder.makeFolder("other");
    const auto alias = aliasOf(folder.write("one/two/file"));
    folder.rename("one/two", "other/two");

    EXPECT_EQ(resolve(alias), folder.url("other/two/file"));
}

TEST_P(LinuxAliasDataTest, FindsAFileWhoseFolderWasReplaced)
{
    folder.makeFolder("folder");
    const auto alias = aliasOf(folder.write("folder/file"));
    folder.rename("folder", "old");
    folder.makeFolder("folder");
    folder.rename("old/file", "folder/file");
    folder.remove("old");

    EXPECT_EQ(resolve(alias), folder.url("folder/file"));
}

TEST_P(LinuxAliasDataTest, FindsTheNameThatIsLeftOfTwo)
{
    const auto alias = aliasOf(folder.write("file"));
    const auto other = folder.link("file", "hard link");
    folder.remove("file");

    EXPECT_EQ(resolve(alias), other);
}

TEST_P(LinuxAliasDataTest, LeadsToALinkItselfAlsoWhereThatLeadsNowhere)
{
    const auto alias = aliasOf(folder.symlink("nowhere", "link"));
    EXPECT_EQ(resolve(alias), folder.url("link"));

    const auto renamed = folder.rename("link", "renamed");
    EXPECT_EQ(resolve(alias), renamed);
}

TEST_P(LinuxAliasDataTest, TellsThePlaceWithoutTheLinksOnTheWay)
{
    folder.makeFolder("folder");
    const auto file = folder.write("folder/file");
    folder.symlink("folder", "link");
    const auto alias = aliasOf("link/file");
    folder.remove("link");

    EXPECT_EQ(resolve(alias), file);
}

TEST_P(LinuxAliasDataTest, DoesNotFollowLinksOnItsSearch)
{
    TemporaryFolder elsewhere(GetParam().place);
    elsewhere.makeFolder("folder");
    folder.makeFolder("folder");
    const auto alias = aliasOf(folder.write("folder/file"));
    folder.rename("folder/file", "file");
    folder.remove("folder");
    folder.symlink(elsewhere.path("folder"), "folder");

    EXPECT_EQ(resolve(alias), folder.url("file"));
}

TEST_P(LinuxAliasDataTest, LeadsToTheRootOfTheFileSystem)
{
    EXPECT_EQ(resolve(aliasOf(zef::FileURL::fromPath("/", zef::URLKind::folder))),
        zef::FileURL::fromPath("/", zef::URLKind::folder));
}

TEST_P(LinuxAliasDataTest, SaysThatADeletedFileIsNotFound)
{
    const auto alias = aliasOf(folder.write("file"));
    folder.remove("file");

    EXPECT_EQ(resultOf(alias), zef::FileError::notFound);
}

TEST_P(LinuxAliasDataTest, NeverLeadsToTheFileThatTookThePlace)
{
    const auto alias = aliasOf(folder.write("file", "old"));
    folder.write("new", "new");
    folder.rename("new", "file");

    EXPECT_EQ(resultOf(alias), zef::FileError::notFound);
}

TEST_P(LinuxAliasDataTest, NeverLeadsToTheFileThatTookTheNumber)
{
    const auto file = folder.write("file");
    const auto old = stat(file);
    const auto alias = aliasOf(file);
    folder.remove("file");
    bool isReused = false;
    for (int number = 0; number < 100 && !isReused; ++number)
        isReused = stat(folder.write("file " + std::to_string(number))).inode == old.inode;
    if (!isReused)
        GTEST_SKIP() << "the file system gives no number again";

    EXPECT_EQ(resultOf(alias), zef::FileError::notFound);
}

TEST_P(LinuxAliasDataTest, NeverLeadsToTheFileThatTookPlaceAndNumber)
{
    const auto file = folder.write("file");
    const auto old = stat(file);
    const auto alias = aliasOf(file);
    folder.remove("file");
    if (stat(folder.write("file")).inode != old.inode)
        GTEST_SKIP() << "the file system gives no number again";

    EXPECT_EQ(resultOf(alias), zef::FileError::notFound);
}

TEST_P(LinuxAliasDataTest, FindsTheFileThatComesBackAfterItWasSearched)
{
    folder.makeFolder("folder");
    const auto file = folder.write("file");
    const auto alias = aliasOf(file);
    zef::LinuxAliasData aliases;
    folder.link("file", "folder/link");
    folder.remove("file");
    const auto target = aliases.resolve(alias);
    ASSERT_TRUE(target);
    EXPECT_EQ(target->url, folder.url("folder/link"));
    const auto back = folder.rename("folder/link", "back");

    const auto found = aliases.resolve(alias);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->url, back);
}

TEST_P(LinuxAliasDataTest, GivesUpWhenItsTimeIsUp)
{
    // Each look at this clock takes a second.
    class HastyClock final : public zef::Clock {
    public:
        HastyClock() { replaceShared(this); }
        ~HastyClock() override { replaceShared(nullptr); }
        zef::Date now() override { return zef::Clock::system().now(); }
        double monotonicSeconds() override { return _seconds += 1; }
        void sleep(double) override { }

    private:
        double _seconds = 1000;
    };
    if (mayOpen())
        GTEST_SKIP() << "needs no search";
    folder.makeFolder("one");
    folder.makeFolder("two");
    const auto alias = aliasOf(folder.write("one/file"));
    const auto moved = folder.rename("one/file", "two/file");
    ASSERT_EQ(resolve(alias), moved);
    const HastyClock clock;

    EXPECT_EQ(resultOf(alias), zef::FileError::notFound);
}

TEST_P(LinuxAliasDataTest, MakesNothingOfAFileThatIsGone)
{
    const auto file = folder.write("file");
    const zef::FSRef ref(stat(file));
    folder.remove("file");

    EXPECT_EQ(zef::LinuxAliasData().make(ref, file).error(), zef::FileError::notFound);
}

TEST_P(LinuxAliasDataTest, MakesNothingOfAnEmptyReference)
{
    EXPECT_EQ(zef::LinuxAliasData().make(zef::FSRef(), folder.write("file")).error(),
        zef::FileError::badReference);
}

TEST_P(LinuxAliasDataTest, IsMadeOfAFileThatWasMovedMeanwhile)
{
    const auto file = folder.write("file");
    zef::FSRef ref(stat(file));
    zef::Locator::shared().retain(ref, file);
    const auto renamed = folder.rename("file", "renamed");
    const auto bytes = zef::LinuxAliasData().make(ref, file);
    zef::Locator::shared().release(ref);

    ASSERT_TRUE(bytes);
    EXPECT_EQ(resolve(*bytes), renamed);
}

TEST_P(LinuxAliasDataTest, RefusesBytesOfNoMeaning)
{
    using Bytes = zef::AliasData::Bytes;

    EXPECT_EQ(resultOf(Bytes()), zef::FileError::io);
    EXPECT_EQ(resultOf(Bytes(100)), zef::FileError::io);
    EXPECT_EQ(resultOf(Bytes(1000000)), zef::FileError::io);
}

TEST_P(LinuxAliasDataTest, LeadsNowhereElseWhateverTheBytesSay)
{
    const auto file = folder.write("file");
    folder.write("another");
    const auto alias = aliasOf(file);
    zef::LinuxAliasData aliases;
    std::mt19937 random(1);

    for (int round = 0; round < 60; ++round) {
        auto bytes = alias;
        bytes[random() % bytes.size()] = static_cast<std::byte>(random());
        if (round % 2)
            repairDigest(bytes);
        const auto target = aliases.resolve(bytes);
        EXPECT_TRUE(!target || target->url == file) << round;
    }
}

} // namespace
