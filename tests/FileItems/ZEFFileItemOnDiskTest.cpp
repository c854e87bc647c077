// SPDX-License-Identifier: MIT
#include "tests/support/DescriptorBudget.h"
#include "tests/support/FileItemFixture.h"
#include "tests/support/RecordingFileItem.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

class ZEFFileItemOnDiskTest : public FileItemFixture {
protected:
    ZEFFileItemOnDiskTest() { folder.makeFolder("folder"); }

    // What the observer finds out and the item makes of it.
    std::vector<ZEFFileEvent> eventsAfter(RecordingFileItem& file)
    {
        file.events.clear();
        file.updateForObserver(observer.get());
        return file.events;
    }
};

INSTANTIATE_TEST_SUITE_P(, ZEFFileItemOnDiskTest,
    testing::Values(Spelling::direct, Spelling::throughLink), nameOfSpelling);

TEST_P(ZEFFileItemOnDiskTest, IsOneObjectForAFileAndItsHardLink)
{
    folder.write("file");
    folder.link("file", "folder/hard link");
    const auto file = item("file");

    EXPECT_EQ(item("folder/hard link"), file);
    EXPECT_EQ(file->url(), url("file"));
}

TEST_P(ZEFFileItemOnDiskTest, FollowsTheOtherNameWhenItsOwnIsRemoved)
{
    folder.write("file");
    folder.link("file", "hard link");
    const auto file = item("file");
    folder.remove("file");

    EXPECT_EQ(file->currentURL(), url("hard link"));
}

TEST_P(ZEFFileItemOnDiskTest, FollowsARenamedFile)
{
    folder.write("file");
    const auto file = item("file");
    folder.rename("file", "renamed \xff");

    EXPECT_EQ(file->currentURL(), url("renamed \xff"));
    EXPECT_EQ(file->url(), url("renamed \xff"));
    EXPECT_EQ(*file->path(), path("renamed \xff"));
    EXPECT_EQ(*file->currentPath(), path("renamed \xff"));
}

TEST_P(ZEFFileItemOnDiskTest, FollowsAFileThatIsMovedToAFolderItKnows)
{
    folder.write("file");
    const auto target = item("folder");
    const auto file = item("file");
    folder.rename("file", "folder/file");

    EXPECT_EQ(file->currentURL(), url("folder/file"));
}

TEST_P(ZEFFileItemOnDiskTest, FollowsAFileThatIsMovedToAnyFolderIfItMay)
{
    folder.write("file");
    const auto file = item("file");
    folder.makeFolder("unknown");
    folder.rename("file", "unknown/file");

    const auto found = file->currentURL();

    EXPECT_EQ(found ? found.lastPathComponent() : "", findsEverything() ? "file" : "");
    EXPECT_EQ(file->isValid(), findsEverything());
}

TEST_P(ZEFFileItemOnDiskTest, FollowsAFolderAndWhatIsInIt)
{
    folder.write("folder/file");
    const auto directory = item("folder");
    const auto file = item("folder/file");
    folder.rename("folder", "renamed");

    EXPECT_EQ(directory->currentURL(), folderURL("renamed"));
    EXPECT_EQ(file->currentURL(), url("renamed/file"));
}

TEST_P(ZEFFileItemOnDiskTest, LosesADeletedFile)
{
    folder.write("file");
    const auto file = item("file");
    file->registerFileObserver(observer.get());
    folder.remove("file");

    EXPECT_EQ(file->changesForObserver(observer.get()), lost);
    EXPECT_FALSE(file->isValid());
    EXPECT_FALSE(file->currentURL());
    EXPECT_FALSE(file->url());
    EXPECT_EQ(file->changesForObserver(observer.get()), nothingToTell);
}

TEST_P(ZEFFileItemOnDiskTest, KeepsADanglingLinkAndFollowsIt)
{
    folder.symlink("nowhere", "dangling");
    const auto dangling = item("dangling");
    EXPECT_TRUE(dangling->isSymlink());
    EXPECT_EQ(dangling->currentURL(), url("dangling"));
    folder.rename("dangling", "renamed");

    EXPECT_EQ(dangling->currentURL(), url("renamed"));
    folder.remove("renamed");
    EXPECT_FALSE(dangling->currentURL());
}

TEST_P(ZEFFileItemOnDiskTest, IsTheLinkAndNotWhatItLeadsTo)
{
    folder.write("file");
    folder.symlink("file", "to file");
    const auto link = item("to file");
    link->registerFileObserver(observer.get());

    change("file");

    EXPECT_TRUE(link->isSymlink());
    EXPECT_FALSE(item("file")->isSymlink());
    EXPECT_EQ(link->changesForObserver(observer.get()), unchanged);
}

TEST_P(ZEFFileItemOnDiskTest, IsTheLinkToAFolderAlsoWhenAskedForByItsPath)
{
    folder.symlink("folder", "to folder");

    const auto link = ZEFFileItem::classObject.newFileItemForPath(path("to folder/"));

    EXPECT_TRUE(link->isSymlink());
    EXPECT_FALSE(link->isBasicDirectory());
    EXPECT_EQ(link->url(), folderURL("to folder"));
    EXPECT_NE(link, item("folder"));
}

TEST_P(ZEFFileItemOnDiskTest, TakesASocketForABasicDirectory)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto place = folder.path("socket");
    ASSERT_LT(place.size(), sizeof address.sun_path);
    place.copy(address.sun_path, place.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int result = ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(socket);
    ASSERT_EQ(result, 0);

    const auto object = item("socket");

    EXPECT_TRUE(object->isBasicDirectory());
    EXPECT_FALSE(object->isSymlink());
    EXPECT_EQ(object->url(), folderURL("socket"));
    EXPECT_EQ(object->currentURL(), folderURL("socket"));
}

TEST_P(ZEFFileItemOnDiskTest, IsFoundByItsReferenceWhereverItIs)
{
    folder.write("file");
    auto file = item("file");
    const auto reference = *file->fsRef();

    EXPECT_EQ(ZEFFileItem::classObject.newFileItemForFSRef(&reference), file);
    folder.rename("file", "renamed");
    EXPECT_EQ(ZEFFileItem::classObject.newFileItemForFSRef(&reference), file);
    EXPECT_EQ(file->url(), url("file")); // until it is asked where it is
}

TEST_P(ZEFFileItemOnDiskTest, TellsObserversOfWritesAndRenamesOnce)
{
    folder.write("file");
    const auto file = item("file");
    file->registerFileObserver(observer.get());
    file->registerFileObserver(other.get());

    change("file");
    EXPECT_EQ(file->changesForObserver(observer.get()), changed);
    EXPECT_EQ(file->changesForObserver(observer.get()), unchanged);
    folder.rename("file", "renamed");
    EXPECT_EQ(file->changesForObserver(observer.get()), moved);
    EXPECT_EQ(file->changesForObserver(other.get()), moved);
    EXPECT_FALSE(file->changesForObserver(other.get()).pathChanged);
    EXPECT_FALSE(file->changesForObserver(observer.get()).pathChanged);
}

TEST_P(ZEFFileItemOnDiskTest, GivesEachKindOfChangeItsEvent)
{
    folder.write("file");
    const auto target = item("folder");
    const auto item = RecordingFileItem::classObject.newFileItemForURL(url("file"));
    auto& file = static_cast<RecordingFileItem&>(*item.get());
    file.registerFileObserver(observer.get());
    using Events = std::vector<ZEFFileEvent>;

    EXPECT_EQ(eventsAfter(file), Events{});
    change("file");
    EXPECT_EQ(eventsAfter(file), Events{ ZEFFileEvent::updated });
    folder.rename("file", "renamed");
    EXPECT_EQ(eventsAfter(file), Events{ ZEFFileEvent::renamed });
    folder.rename("renamed", "folder/renamed");
    EXPECT_EQ(eventsAfter(file), Events{ ZEFFileEvent::moved });
    folder.remove("folder/renamed");
    EXPECT_EQ(eventsAfter(file), Events{ ZEFFileEvent::removed });
    EXPECT_EQ(eventsAfter(file), Events{});
}

TEST_P(ZEFFileItemOnDiskTest, IsLostWhenAnEditorSavesANewFileInItsPlace)
{
    folder.write("file");
    const auto old = item("file");
    old->registerFileObserver(observer.get());
    folder.write("temporary", "new text");
    folder.rename("temporary", "file");

    const auto young = item("file");

    EXPECT_NE(young, old);
    EXPECT_EQ(old->changesForObserver(observer.get()), lost);
    EXPECT_EQ(young->currentURL(), url("file"));
}

TEST_P(ZEFFileItemOnDiskTest, FollowsFilesWhoseNamesAreSwapped)
{
    folder.write("one");
    folder.write("two");
    const auto one = item("one");
    const auto two = item("two");
    one->registerFileObserver(observer.get());
    two->registerFileObserver(observer.get());
    folder.exchange("one", "two");

    EXPECT_EQ(one->changesForObserver(observer.get()), moved);
    EXPECT_EQ(two->changesForObserver(observer.get()), moved);
    EXPECT_EQ(one->url(), url("two"));
    EXPECT_EQ(two->url(), url("one"));
    EXPECT_EQ(item("two"), one);
}

TEST_P(ZEFFileItemOnDiskTest, IsNotTakenForAYoungFileWithItsNumber)
{
    const DescriptorBudget none(0); // a descriptor that is held keeps the number from coming back
    folder.write("file");
    const auto deleted = stat("file");
    const auto old = item("file");
    old->registerFileObserver(observer.get());
    folder.remove("file");
    if (!writeWithNumberOf(deleted, "file"))
        GTEST_SKIP() << "this file system does not give the numbers of deleted files again";

    const auto young = item("file");

    EXPECT_NE(young, old);
    EXPECT_EQ(young->fileiNode(), old->fileiNode());
    EXPECT_EQ(log.count("Error while getting file object "), 1u);
    EXPECT_EQ(old->changesForObserver(observer.get()), lost);
    EXPECT_EQ(young->changesForObserver(observer.get()), unchanged);
}

TEST_P(ZEFFileItemOnDiskTest, GivesTheDateOfAFile)
{
    folder.write("file");
    folder.setModificationTime("file", 1'000'000'000);
    const auto file = item("file");
    EXPECT_EQ(file->currentModificationDate(), std::nullopt);
    EXPECT_EQ(file->modificationDate()->secondsSince1970(), 1e9);
    EXPECT_EQ(file->currentModificationDate()->secondsSince1970(), 1e9);

    folder.setModificationTime("file", 1'000'000'001);

    EXPECT_EQ(file->modificationDate()->secondsSince1970(), 1e9);
    EXPECT_EQ(file->currentModificationDate()->secondsSince1970(), 1e9 + 1);
    EXPECT_EQ(file->modificationDate()->secondsSince1970(), 1e9 + 1);
}

} // namespace
