// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include "tests/support/LocatorFixture.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class LocatorFolderTest : public LocatorFixture { };

INSTANTIATE_TEST_SUITE_P(
    , LocatorFolderTest, testing::ValuesIn(locatorCircumstances()), nameOfCircumstance);

TEST_P(LocatorFolderTest, MarksFoldersAndNothingElseByASlash)
{
    folder.makeFolder("inner");
    folder.write("file");
    const auto inner = track(folder.url("inner"));
    const auto file = track(folder.folderUrl("file"));

    EXPECT_EQ(locate(inner), folder.folderUrl("inner"));
    EXPECT_EQ(locate(file), folder.url("file"));
}

TEST_P(LocatorFolderTest, FindsAnObjectThatNobodyRetainsInItsFolder)
{
    const auto url = folder.write("before");
    const auto loose = ref(url);
    const auto renamed = folder.rename("before", "after");

    EXPECT_EQ(locate(loose, url), renamed);
}

TEST_P(LocatorFolderTest, FindsAFileMovedToAKnownFolder)
{
    folder.makeFolder("from");
    track(folder.makeFolder("to"));
    const auto tracked = track(folder.write("from/file"));
    const auto moved = folder.rename("from/file", "to/other");

    EXPECT_EQ(locate(tracked), moved);
}

TEST_P(LocatorFolderTest, FindsAFileMovedToAnUnknownFolderIfItMay)
{
    folder.makeFolder("from");
    folder.makeFolder("to");
    const auto tracked = track(folder.write("from/file"));
    const auto moved = folder.rename("from/file", "to/file");

    EXPECT_EQ(locate(tracked), findsEverything() ? moved : nullptr);
}

TEST_P(LocatorFolderTest, FindsAFileMovedAndThenRenamedWhereItWentTo)
{
    folder.makeFolder("from");
    folder.makeFolder("to");
    auto tracked = track(folder.write("from/file"));
    // As its owner noticed by itself.
    tracked.url = folder.rename("from/file", "to/file");
    const auto renamed = folder.rename("to/file", "to/renamed");

    EXPECT_EQ(locate(tracked), renamed);
}

TEST_P(LocatorFolderTest, FindsAnObjectWhoseLastURLIsUnknownInItsKnownFolder)
{
    track(folder.folderUrl());
    const auto tracked = track(folder.write("file"));

    EXPECT_EQ(locate(tracked.ref, nullptr), tracked.url);
}

TEST_P(LocatorFolderTest, FindsARenamedFolderAndTheFilesInIt)
{
    const auto inner = track(folder.makeFolder("before"));
    const auto file = track(folder.write("before/file"));
    folder.rename("before", "after");

    EXPECT_EQ(locate(file), folder.url("after/file"));
    EXPECT_EQ(locate(inner), folder.folderUrl("after"));
}

TEST_P(LocatorFolderTest, FindsAFileRenamedInARenamedFolder)
{
    track(folder.makeFolder("before"));
    const auto file = track(folder.write("before/file"));
    folder.rename("before", "after");
    const auto renamed = folder.rename("after/file", "after/other");

    EXPECT_EQ(locate(file), renamed);
}

TEST_P(LocatorFolderTest, FindsAFileRenamedWhereAnotherFolderTookThePlaceOfItsOwn)
{
    track(folder.makeFolder("place"));
    const auto file = track(folder.write("place/file"));
    folder.rename("place", "moved");
    folder.makeFolder("place");
    const auto renamed = folder.rename("moved/file", "moved/other");

    EXPECT_EQ(locate(file), renamed);
}

TEST_P(LocatorFolderTest, FindsAFileInItsMovedFolderAmongVeryManyKnownOnes)
{
    track(folder.makeFolder("place"));
    const auto file = track(folder.write("place/file"));
    folder.rename("place", "moved");
    folder.makeFolder("place");
    const auto renamed = folder.rename("moved/file", "moved/other");
    // More than the locator looks into.
    for (int number = 0; number < 50; ++number)
        track(folder.makeFolder(std::to_string(number)));

    EXPECT_EQ(locate(file), renamed);
}

TEST_P(LocatorFolderTest, SearchesKnownFoldersThatAreGoneOnlyOnce)
{
    // Searched again for each other they would take longer than anybody waits.
    for (int number = 0; number < 20; ++number)
        track(folder.makeFolder(std::to_string(number)));
    const auto file = track(folder.write("file"));
    for (int number = 0; number < 20; ++number)
        folder.remove(std::to_string(number));
    folder.remove("file");

    EXPECT_FALSE(locate(file));
}

TEST_P(LocatorFolderTest, FindsAFileInAFolderMovedToAKnownFolder)
{
    track(folder.makeFolder("to"));
    track(folder.makeFolder("inner"));
    const auto file = track(folder.write("inner/file"));
    folder.rename("inner", "to/inner");

    EXPECT_EQ(locate(file), folder.url("to/inner/file"));
}

TEST_P(LocatorFolderTest, FindsAFileInAKnownFolderAfterItsOwnWasDeleted)
{
    track(folder.makeFolder("to"));
    track(folder.makeFolder("from"));
    const auto file = track(folder.write("from/file"));
    folder.rename("from/file", "to/file");
    folder.remove("from");

    EXPECT_EQ(locate(file), folder.url("to/file"));
}

TEST_P(LocatorFolderTest, FindsTheOtherNameOfAFileInTheSameFolder)
{
    const auto tracked = track(folder.write("one"));
    const auto other = folder.link("one", "other");
    folder.remove("one");

    EXPECT_EQ(locate(tracked), other);
}

TEST_P(LocatorFolderTest, FindsTheOtherNameOfAFileInAKnownFolder)
{
    track(folder.makeFolder("inner"));
    const auto tracked = track(folder.write("one"));
    const auto other = folder.link("one", "inner/other");
    folder.remove("one");

    EXPECT_EQ(locate(tracked), other);
}

TEST_P(LocatorFolderTest, DoesNotFindADeletedFolder)
{
    const auto tracked = track(folder.makeFolder("inner"));
    folder.remove("inner");

    EXPECT_FALSE(locate(tracked));
}

TEST_P(LocatorFolderTest, FindsAFolderThatNobodyMayReadAndItsFileByDescriptor)
{
    const auto inner = track(folder.makeFolder("inner"));
    const auto file = track(folder.write("inner/file"));
    folder.rename("inner/file", "inner/other");
    folder.chmod("inner", 0);
    const auto renamed = folder.rename("inner", "closed");

    EXPECT_EQ(locate(inner), renamed);
    const bool isFound = mayHold() || ignoresPermissions();
    EXPECT_EQ(locate(file), isFound ? folder.url("closed/other") : nullptr);
}

TEST_P(LocatorFolderTest, FindsAFileInAFolderThatMayNotBeSearchedByDescriptorAlone)
{
    const WithoutPrivileges none;
    folder.makeFolder("inner");
    const auto file = track(folder.write("inner/before"));
    const auto renamed = folder.rename("inner/before", "inner/after");
    folder.chmod("inner", 0);

    EXPECT_EQ(locate(file), mayHold() ? renamed : nullptr);
}

TEST_P(LocatorFolderTest, DoesNotFindAFileDeletedFromAFolderThatMayNotBeSearched)
{
    const WithoutPrivileges none;
    folder.makeFolder("inner");
    folder.makeFolder("elsewhere");
    const auto file = track(folder.write("inner/file"));
    folder.link("inner/file", "elsewhere/other");
    folder.remove("inner/file");
    folder.chmod("inner", 0);

    EXPECT_FALSE(locate(file));
}

TEST_P(LocatorFolderTest, GivesUpAnObjectWhosePathIsTooLong)
{
    const std::string longName(250, 'n');
    auto top = track(folder.makeFolder("top"));
    const auto file = track(folder.write("top/file"));
    // Each folder goes into the next, so that no path is too long on the way.
    for (int depth = 0; depth < 17; ++depth) {
        folder.makeFolder("outer");
        folder.rename(depth ? longName : "top", "outer/" + (depth ? longName : "top"));
        folder.rename("outer", longName);
    }

    EXPECT_FALSE(locate(top));
    EXPECT_FALSE(locate(file));
}

} // namespace
