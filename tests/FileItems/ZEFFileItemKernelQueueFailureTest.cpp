// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

namespace {

class ZEFFileItemKernelQueueFailureTest : public FakeFileItemFixture {
protected:
    ZEFFileItemKernelQueueFailureTest()
    {
        files.addFile("/file");
        file = item("/file");
    }

    ZEFFileChanges changes() { return file->changesForObserver(observer.get()); }

    zef::Ref<ZEFFileItem> file;
};

TEST_F(ZEFFileItemKernelQueueFailureTest, StaysUnusedWithoutAQueue)
{
    notifier.setQueueFails(true);

    file->initKQueue();

    EXPECT_FALSE(file->usingKQueue());
    EXPECT_EQ(notifier.openTokenCount(), 0u);
    EXPECT_EQ(log.lines(), std::vector<std::string>{ "Error opening kernel queue." });
    EXPECT_EQ(changes(), unchanged);
    files.write("/file");
    EXPECT_EQ(changes(), changed);
}

TEST_F(ZEFFileItemKernelQueueFailureTest, EndsTheFormerWatchWhenItCantBeginAnew)
{
    file->initKQueue();
    notifier.setQueueFails(true);

    file->initKQueue();

    EXPECT_FALSE(file->usingKQueue());
    EXPECT_EQ(notifier.openTokenCount(), 0u);
}

TEST_F(ZEFFileItemKernelQueueFailureTest, StaysInUseWhenTheFileCantBeOpened)
{
    notifier.setOpenFails(true);

    file->initKQueue();

    EXPECT_TRUE(file->usingKQueue());
    EXPECT_EQ(log.lines(),
        std::vector<std::string>{ "Error getting file descriptor for file file:///file" });
}

TEST_F(ZEFFileItemKernelQueueFailureTest, FailsEveryPollOfAFileThatCouldNotBeOpened)
{
    notifier.setOpenFails(true);
    file->initKQueue();
    log.clear();
    files.write("/file");

    EXPECT_EQ(changes(), unchanged); // for there are no events, and stamps don't count
    EXPECT_EQ(log.lines(),
        std::vector<std::string>{
            "An error occurred (event count -1).  The error was Bad file descriptor." });
}

TEST_F(ZEFFileItemKernelQueueFailureTest, EndsWithoutAPollWhenTheFileCouldNotBeOpened)
{
    notifier.setOpenFails(true);
    file->initKQueue();
    log.clear();

    file->endKQueue();

    EXPECT_FALSE(file->usingKQueue());
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemKernelQueueFailureTest, TellsWhyAPollFailed)
{
    file->initKQueue();
    changes();
    notifier.fire(ref("/file"));
    notifier.setPollError(EIO);

    EXPECT_EQ(changes(), unchanged);
    EXPECT_EQ(log.lines(),
        std::vector<std::string>{
            "An error occurred (event count -1).  The error was Input/output error." });
    notifier.setPollError(0);
    EXPECT_EQ(changes(), changed);
}

TEST_F(ZEFFileItemKernelQueueFailureTest, TellsThatThereIsNothingToPoll)
{
    file->ZEF_checkKQueue();

    EXPECT_EQ(log.lines(),
        std::vector<std::string>{
            "An error occurred (event count -1).  The error was Bad file descriptor." });
}

TEST_F(ZEFFileItemKernelQueueFailureTest, CantWatchALostFile)
{
    files.remove("/file");
    file->currentURL();

    file->initKQueue();

    EXPECT_TRUE(file->usingKQueue());
    EXPECT_EQ(notifier.openTokenCount(), 0u);
    EXPECT_EQ(
        log.lines(), std::vector<std::string>{ "Error getting file descriptor for file (null)" });
    EXPECT_EQ(changes(), nothingToTell);
}

TEST_F(ZEFFileItemKernelQueueFailureTest, WatchesItsOwnFileWhateverReferenceAHostGaveIt)
{
    files.addFile("/strange");
    const auto own = ref("/strange");
    const auto foreign = ref("/file");
    const auto strange = ZEFFileItem::classObject.newFileItemForURLFsRef(url("/strange"), &foreign);

    strange->initKQueue();

    EXPECT_EQ(notifier.openTokenCount(own), 1u);
    EXPECT_EQ(notifier.openTokenCount(foreign), 0u);
}

} // namespace
