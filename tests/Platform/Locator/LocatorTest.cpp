// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/LocatorFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// A generous number of tries for what the file system does at its next convenience.
constexpr int mostTries = 100000;

class LocatorTest : public LocatorFixture {
protected:
    // Removes the file and makes it again until the new one has another birth time, which advances
    // only with the kernel's tick; if the file system can, under the same number.
    void makeAnew(const std::string& name, const zef::Stat& old)
    {
        for (int tries = 0; tries < mostTries; ++tries) {
            folder.remove(name);
            const auto anew = stat(folder.write(name));
            if (anew.birthTime != old.birthTime || !anew.hasBirthTime)
                return;
        }
        FAIL() << "the birth time never changed";
    }
};

INSTANTIATE_TEST_SUITE_P(
    , LocatorTest, testing::ValuesIn(locatorCircumstances()), nameOfCircumstance);

TEST_P(LocatorTest, MakesAReferenceToAnObject)
{
    const auto url = folder.write("file");
    zef::FSRef made;

    EXPECT_TRUE(locator.makeRef(url, stat(url), made));
    EXPECT_TRUE(made.hasNumbersOf(stat(url)));
    EXPECT_FALSE(made.isFolder());
}

TEST_P(LocatorTest, MakesNoReferenceWithoutAURL)
{
    const auto url = folder.write("file");
    zef::FSRef made;

    EXPECT_FALSE(locator.makeRef(nullptr, stat(url), made));
    EXPECT_TRUE(made.isEmpty());
}

TEST_P(LocatorTest, CompletesAReferenceThatIsRetained)
{
    folder.makeFolder("inner");
    const auto tracked = track(folder.write("inner/file"));

    EXPECT_EQ(tracked.ref.parentInode(), stat(folder.folderUrl("inner")).inode);
    EXPECT_TRUE(tracked.ref.hasHandle());
}

TEST_P(LocatorTest, CompletesAReferenceThatIsRetainedOnceMore)
{
    const auto url = folder.write("file");
    const auto first = track(url);
    const auto second = track(url);

    EXPECT_EQ(second.ref.parentInode(), first.ref.parentInode());
    EXPECT_EQ(second.ref.handle(), first.ref.handle());
    EXPECT_EQ(locator.heldDescriptorCount(), mayHold() ? 1u : 0u);
}

TEST_P(LocatorTest, CompletesAReferenceToAnObjectThatWasRenamedBefore)
{
    const auto url = folder.write("before");
    auto late = ref(url);
    const auto renamed = folder.rename("before", "after");
    locator.retain(late, url);

    // Without handle and folder it is looked for in the folder of its last URL.
    EXPECT_TRUE(late.hasHandle());
    EXPECT_EQ(late.parentInode(), stat(folder.folderUrl()).inode);
    EXPECT_EQ(locate(late, url), renamed);
    locator.release(late);
}

TEST_P(LocatorTest, CompletesAReferenceWhoseObjectGaveItsPlaceToAnother)
{
    const auto url = folder.write("before");
    auto late = ref(url);
    const auto renamed = folder.rename("before", "after");
    folder.write("before");
    locator.retain(late, url);

    EXPECT_EQ(late.handle(), zef::FileSystem::system().handle(renamed.path().c_str()));
    EXPECT_EQ(locate(late, url), renamed);
    locator.release(late);
}

TEST_P(LocatorTest, LeavesAReferenceToADeletedObjectAsItIs)
{
    const auto url = folder.write("file");
    auto lost = ref(url);
    folder.remove("file");
    locator.retain(lost, url);

    EXPECT_FALSE(lost.hasHandle());
    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
    locator.release(lost);
}

TEST_P(LocatorTest, IgnoresAnEmptyReference)
{
    zef::FSRef empty;
    locator.retain(empty, folder.folderUrl());
    locator.release(empty);

    EXPECT_TRUE(empty.isEmpty());
    EXPECT_FALSE(locate(empty, folder.folderUrl()));
}

TEST_P(LocatorTest, FindsAnObjectWhereItWas)
{
    const auto tracked = track(folder.write("file"));

    EXPECT_EQ(locate(tracked), tracked.url);
}

TEST_P(LocatorTest, FindsARenamedFile)
{
    const auto tracked = track(folder.write("before"));
    const auto renamed = folder.rename("before", "after");

    EXPECT_EQ(locate(tracked), renamed);
}

TEST_P(LocatorTest, FindsAFileRenamedTwiceInARow)
{
    const auto tracked = track(folder.write("first"));
    const auto other = track(folder.write("other"));
    folder.rename("first", "second");
    ASSERT_EQ(locate(tracked), folder.url("second"));
    // At once, so that the folder's time stamps may not show it.
    const auto third = folder.rename("second", "third");
    const auto renamed = folder.rename("other", "another");

    EXPECT_EQ(locate(tracked), third);
    EXPECT_EQ(locate(other), renamed);
}

TEST_P(LocatorTest, FindsANameThatIsNewerThanTheLastReadingOfItsFolder)
{
    const auto tracked = track(folder.write("one"));
    const auto other = track(folder.write("other"));
    folder.rename("other", "another");
    ASSERT_EQ(locate(other), folder.url("another"));
    // In the same tick this leaves a folder in memory with the same time stamps and size.
    const auto linked = folder.link("one", "two");
    folder.remove("one");

    EXPECT_EQ(locate(tracked), linked);
}

TEST_P(LocatorTest, FindsAnObjectWhoseLastURLIsUnknownIfItMay)
{
    const auto tracked = track(folder.write("file"));

    EXPECT_EQ(locate(tracked.ref, nullptr), findsEverything() ? tracked.url : nullptr);
}

TEST_P(LocatorTest, FindsAFileWhoseNameEndsAsThatOfALostOne)
{
    const auto tracked = track(folder.write("file"));
    const auto renamed = folder.rename("file", "file (deleted)");

    EXPECT_EQ(locate(tracked), renamed);
}

TEST_P(LocatorTest, FindsNamesOfAnyBytes)
{
    const auto tracked = track(folder.write("file"));
    const auto renamed = folder.rename("file", "two\nlines \xff\\012");

    EXPECT_EQ(locate(tracked), renamed);
}

TEST_P(LocatorTest, DoesNotFindADeletedFileThatADecoyIsNamedAfter)
{
    const auto tracked = track(folder.write("file"));
    folder.remove("file");
    folder.write("file");
    folder.write("file (deleted)");
    const auto decoy = ref(folder.url("file"));
    // Where nothing is held the file system may give the number to the decoy in the same tick.
    if (decoy.hasNumbersOf(tracked.ref) && decoy.birthTime() == tracked.ref.birthTime())
        makeAnew("file", stat(folder.url("file")));

    EXPECT_FALSE(locate(tracked));
}

TEST_P(LocatorTest, DoesNotFindADeletedFile)
{
    const auto tracked = track(folder.write("file"));
    folder.remove("file");

    EXPECT_FALSE(locate(tracked));
}

TEST_P(LocatorTest, ClosesTheDescriptorOfADeletedFileWhenItIsLookedFor)
{
    const auto tracked = track(folder.write("file"));
    folder.remove("file");
    locate(tracked);

    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
}

TEST_P(LocatorTest, DoesNotTakeTheNextFileOfTheSameNumberForADeletedOne)
{
    const auto tracked = track(folder.write("file"));
    makeAnew("file", stat(tracked.url));

    EXPECT_FALSE(locate(tracked));
}

TEST_P(LocatorTest, DoesNotFollowALinkThatLeadsNowhere)
{
    const auto tracked = track(folder.symlink("missing", "link"));
    const auto renamed = folder.rename("link", "other");

    EXPECT_EQ(locate(tracked), renamed);
}

TEST_P(LocatorTest, FindsTheLinkAndNotWhatItLeadsTo)
{
    folder.makeFolder("target");
    const auto tracked = track(folder.symlink("target", "link"));
    const auto renamed = folder.rename("link", "other");

    EXPECT_EQ(locate(tracked), renamed);
}

TEST_P(LocatorTest, FollowsTheFileAndNotTheNameWhenAnEditorSavesANewOne)
{
    const auto document = track(folder.write("document"));
    const auto draft = track(folder.write("draft"));
    const auto url = folder.rename("draft", "document");

    EXPECT_FALSE(locate(document));
    EXPECT_EQ(locate(draft), url);
}

TEST_P(LocatorTest, FollowsFilesWhoseNamesAreSwapped)
{
    const auto one = track(folder.write("one"));
    const auto other = track(folder.write("other"));
    folder.exchange("one", "other");

    EXPECT_EQ(locate(one), other.url);
    EXPECT_EQ(locate(other), one.url);
}

TEST_P(LocatorTest, FindsAFileThatNobodyMayRead)
{
    folder.write("file");
    folder.chmod("file", 0);
    const auto tracked = track(folder.url("file"));
    const auto renamed = folder.rename("file", "other");

    EXPECT_EQ(locate(tracked), renamed);
}

} // namespace
