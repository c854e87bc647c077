// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Time/RecentLook.h"

#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"
#include "ZEFFilesystemTools/Platform/Presentation/HiddenListCache.h"

#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeLocator.h"
#include "tests/support/SteppedClock.h"

#include <gtest/gtest.h>

namespace {

class RecentLookTest : public testing::Test {
protected:
    RecentLookTest()
    {
        zef::Clock::replaceShared(&clock);
        zef::RecentLook::setLifetime(0.001);
        // A step so far away that no other test's looks serve.
        clock.advance(1000);
    }

    ~RecentLookTest() override
    {
        zef::RecentLook::setLifetime(0);
        zef::Clock::replaceShared(nullptr);
    }

    static zef::FileURL url(std::string_view path)
    {
        return zef::FileURL::fromPath(path, zef::URLKind::file);
    }

    SteppedClock clock;
    FakeFileSystem files;
    FakeLocator locator;
};

TEST_F(RecentLookTest, ServesForItsLifetime)
{
    zef::RecentLook look;
    EXPECT_FALSE(look.serves());

    look.take();
    EXPECT_TRUE(look.serves());
    clock.advance(0.002);
    EXPECT_FALSE(look.serves());
}

TEST_F(RecentLookTest, ServesNoQuestionWithoutALifetime)
{
    zef::RecentLook::setLifetime(0);
    zef::RecentLook look;
    look.take();

    EXPECT_FALSE(look.serves());
}

TEST_F(RecentLookTest, SparesASecondLookAtAnObject)
{
    const zef::FSRef ref(files.addFile("/file"));
    zef::ObjectPlace place;
    ASSERT_EQ(place.findOrRecall(ref, url("/file")), zef::FileError::none);
    const auto count = files.statCount();

    zef::ObjectPlace again;
    EXPECT_EQ(again.findOrRecall(ref, url("/file")), zef::FileError::none);
    EXPECT_EQ(again.url(), url("/file"));
    EXPECT_STREQ(again.path(), "/file");
    EXPECT_EQ(again.stat().inode, ref.inode());
    EXPECT_EQ(files.statCount(), count);
}

TEST_F(RecentLookTest, SparesNoLookWhereTheDiskIsToBeAsked)
{
    const zef::FSRef ref(files.addFile("/file"));
    zef::ObjectPlace place;
    ASSERT_EQ(place.find(ref, url("/file")), zef::FileError::none);
    files.remove("/file");

    EXPECT_EQ(place.find(ref, url("/file")), zef::FileError::notFound);
}

TEST_F(RecentLookTest, LooksAgainAfterAMomentAndForAnotherObject)
{
    const zef::FSRef ref(files.addFile("/file"));
    const zef::FSRef other(files.addFile("/other"));
    zef::ObjectPlace place;
    ASSERT_EQ(place.findOrRecall(ref, url("/file")), zef::FileError::none);

    EXPECT_EQ(place.findOrRecall(other, url("/other")), zef::FileError::none);
    EXPECT_EQ(place.stat().inode, other.inode());
    files.remove("/other");
    clock.advance(0.002);
    EXPECT_EQ(place.findOrRecall(other, url("/other")), zef::FileError::notFound);
}

TEST_F(RecentLookTest, SparesASecondLookForTheListOfAFolder)
{
    files.addFolder("/folder");
    files.addFolder("/elsewhere");
    zef::HiddenListCache lists;
    lists.hides(url("/folder/a"));
    const auto count = files.statCount();

    lists.hides(url("/folder/b"));
    EXPECT_EQ(files.statCount(), count);
    lists.hides(url("/elsewhere/a"));
    EXPECT_EQ(files.statCount(), count + 1);
    lists.hides(url("/folder/a"));
    EXPECT_EQ(files.statCount(), count + 2);
    clock.advance(0.002);
    lists.hides(url("/folder/a"));
    EXPECT_EQ(files.statCount(), count + 3);
}

} // namespace
