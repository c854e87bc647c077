// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include "tests/support/LocatorFixture.h"

#include <gtest/gtest.h>

namespace {

// "link" leads to the folder "real".
class LocatorSpellingTest : public LocatorFixture {
protected:
    LocatorSpellingTest()
    {
        folder.makeFolder("real");
        folder.makeFolder("real/inner");
        folder.symlink("real", "link");
    }
};

INSTANTIATE_TEST_SUITE_P(
    , LocatorSpellingTest, testing::ValuesIn(locatorCircumstances()), nameOfCircumstance);

TEST_P(LocatorSpellingTest, KeepsTheLinkForAFileThatWasRenamed)
{
    folder.write("real/before");
    const auto file = track(folder.url("link/before"));
    folder.rename("real/before", "real/after");

    EXPECT_EQ(locate(file), folder.url("link/after"));
}

TEST_P(LocatorSpellingTest, KeepsTheLinkForAFolderThatWasRenamed)
{
    const auto inner = track(folder.folderUrl("link/inner"));
    folder.rename("real/inner", "real/other");

    EXPECT_EQ(locate(inner), folder.folderUrl("link/other"));
}

TEST_P(LocatorSpellingTest, KeepsTheLinkForAFileInAFolderThatWasRenamed)
{
    track(folder.folderUrl("link/inner"));
    folder.write("real/inner/before");
    const auto file = track(folder.url("link/inner/before"));
    folder.rename("real/inner", "real/other");
    folder.rename("real/other/before", "real/other/after");

    EXPECT_EQ(locate(file), folder.url("link/other/after"));
}

TEST_P(LocatorSpellingTest, KeepsTheLinkForAFileInAFolderThatWasFoundFirst)
{
    const auto inner = track(folder.folderUrl("link/inner"));
    folder.write("real/inner/before");
    const auto file = track(folder.url("link/inner/before"));
    folder.rename("real/inner", "real/other");
    ASSERT_EQ(locate(inner), folder.folderUrl("link/other"));
    folder.rename("real/other/before", "real/other/after");

    EXPECT_EQ(locate(file), folder.url("link/other/after"));
}

TEST_P(LocatorSpellingTest, KeepsTheLinkForAFileMovedBelowIt)
{
    track(folder.folderUrl("real/inner"));
    folder.write("real/file");
    const auto file = track(folder.url("link/file"));
    folder.rename("real/file", "real/inner/file");

    // The folder it went to is known by another spelling, which is nearer.
    EXPECT_EQ(locate(file), folder.url("real/inner/file"));
}

TEST_P(LocatorSpellingTest, SpellsAFileMovedBelowALinkAsItsKnownFolder)
{
    track(folder.folderUrl("link/inner"));
    const auto file = track(folder.write("file"));
    folder.rename("file", "real/inner/file");

    EXPECT_EQ(locate(file), folder.url("link/inner/file"));
}

TEST_P(LocatorSpellingTest, SpellsAFileWithoutAnyLastPlaceAsItsKnownFolder)
{
    track(folder.folderUrl("link/inner"));
    folder.write("real/inner/file");
    const auto file = track(folder.url("real/inner/file"));

    EXPECT_EQ(locate(file.ref, nullptr), folder.url("link/inner/file"));
}

TEST_P(LocatorSpellingTest, SpellsAFileWithoutAnyLastPlaceAsAFolderThatWasFoundFirst)
{
    const auto inner = track(folder.folderUrl("link/inner"));
    folder.write("real/inner/file");
    const auto file = track(folder.url("real/inner/file"));
    folder.rename("real/inner", "real/other");
    ASSERT_EQ(locate(inner), folder.folderUrl("link/other"));

    EXPECT_EQ(locate(file.ref, nullptr), folder.url("link/other/file"));
}

TEST_P(LocatorSpellingTest, KeepsTheSpellingOfAFolderThatMovedBeforeItWasRetained)
{
    auto inner = ref(folder.folderUrl("link/inner"));
    folder.rename("real/inner", "real/other");
    locator.retain(inner, folder.folderUrl("link/inner"));
    const auto file = track(folder.write("real/other/file"));

    // The locator had to look for the folder, and knows it by the link.
    EXPECT_EQ(locate(file.ref, nullptr), folder.url("link/other/file"));
    locator.release(inner);
}

TEST_P(LocatorSpellingTest, IgnoresTheSpellingOfAFolderThatIsElsewhereNow)
{
    track(folder.folderUrl("link/inner"));
    folder.write("real/inner/before");
    const auto file = track(folder.url("real/inner/before"));
    folder.remove("link");
    folder.symlink("elsewhere", "link");
    folder.rename("real/inner/before", "real/inner/after");

    EXPECT_EQ(locate(file), folder.url("real/inner/after"));
}

TEST_P(LocatorSpellingTest, FindsAFileBelowALinkThatLeadsElsewhereNow)
{
    track(folder.folderUrl("real"));
    folder.write("real/file");
    const auto file = track(folder.url("link/file"));
    folder.remove("link");
    folder.makeFolder("link");

    EXPECT_EQ(locate(file), folder.url("real/file"));
}

} // namespace
