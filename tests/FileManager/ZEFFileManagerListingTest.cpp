// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "tests/support/ManagerFixture.h"

#include <set>

namespace {

/// What a file manager lists at once.
class ZEFFileManagerListingTest : public ManagerFixture {
protected:
    using Names = std::set<std::string>;

    ZEFFileManagerListingTest()
    {
        folder.write("watched/a");
        folder.write("watched/b");
    }

    zef::Ref<ZEFFileItem> item(std::string_view name = "watched")
    {
        return ReportingItem::classObject.newFileItemForURL(folder.folderUrl(name));
    }

    static Names namesOf(const zef::Ref<zef::Array<ZEFFileItem>>& files)
    {
        Names names;
        for (const auto& file : *files)
            names.insert(file->url().lastPathComponent());
        return names;
    }

    Names listed() { return namesOf(manager.filesInDirectory(item().get())); }
};

TEST_F(ZEFFileManagerListingTest, ListsAFolderThatNobodyWatchesAndKeepsNothing)
{
    EXPECT_EQ(listed(), Names({ "a", "b" }));
    EXPECT_TRUE(manager.subscriptions().empty());
}

TEST_F(ZEFFileManagerListingTest, ListsAFolderThatNobodyWatchesAnewEachTime)
{
    listed();
    folder.write("watched/c");
    folder.remove("watched/a");

    EXPECT_EQ(listed(), Names({ "b", "c" }));
}

TEST_F(ZEFFileManagerListingTest, ListsWholeAlsoWhereFoldersLoadInTheBackground)
{
    manager.setAsynchronous(true);

    EXPECT_EQ(listed(), Names({ "a", "b" }));
    EXPECT_EQ(loop.secondsUntilNextTimer(), never);
}

TEST_F(ZEFFileManagerListingTest, GivesTheItemsThatTheSubscriptionOfAWatchedFolderKnows)
{
    const auto subscriber = zef::makeRef<RecordingSubscriber>();
    const auto* subscription = subscribe(*subscriber);
    folder.write("watched/c");

    const auto files = manager.filesInDirectory(item().get());

    EXPECT_EQ(namesOf(files), Names({ "a", "b" }));
    EXPECT_EQ(files->objectAtIndex(0), subscription->files()->objectAtIndex(0));
    manager.unsubscribe(subscriber.get());
}

TEST_F(ZEFFileManagerListingTest, EndsTheLoadOfAWatchedFolder)
{
    manager.setAsynchronous(true);
    const auto subscriber = zef::makeRef<RecordingSubscriber>();
    const auto* subscription = subscribe(*subscriber);
    ASSERT_TRUE(subscription->isLoading());

    EXPECT_EQ(listed(), Names({ "a", "b" }));
    EXPECT_FALSE(subscription->isLoading());
    manager.unsubscribe(subscriber.get());
}

TEST_F(ZEFFileManagerListingTest, MakesAnEmptyArrayOfAnEmptyFolder)
{
    folder.makeFolder("empty");

    const auto files = manager.filesInDirectory(item("empty").get());

    ASSERT_TRUE(files);
    EXPECT_TRUE(files->isEmpty());
}

TEST_F(ZEFFileManagerListingTest, HasNothingToTellOfNilAndOfWhatIsNoFolder)
{
    const auto file = ReportingItem::classObject.newFileItemForURL(folder.url("watched/a"));

    EXPECT_FALSE(manager.filesInDirectory(nullptr));
    EXPECT_FALSE(manager.filesInDirectory(file.get()));
    EXPECT_THAT(log.lines(), testing::SizeIs(2));
    log.clear();
}

TEST_F(ZEFFileManagerListingTest, LeavesTheFileClassOpen)
{
    listed();

    EXPECT_TRUE(manager.setFileClass(&ZEFFileItem::classObject));
}

} // namespace
