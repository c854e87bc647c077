// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/NotifierFixture.h"

#include <gtest/gtest.h>

#include <cstddef>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// What a token by events reports and what it does not.
class ChangeNotifierTest : public NotifierFixture { };

TEST_F(ChangeNotifierTest, ReportsAWriteThatRestoresTheModificationTime)
{
    folder.write("a");
    folder.setModificationTime("a", 1000);
    const auto file = openVerified("a");

    folder.write("a", "TEXT");
    folder.setModificationTime("a", 1000);

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
}

TEST_F(ChangeNotifierTest, ReportsAChangeOfPermissions)
{
    folder.write("a");
    const auto file = openVerified("a");

    folder.chmod("a", 0600);

    EXPECT_EQ(poll(file), 1);
}

TEST_F(ChangeNotifierTest, ReportsAnotherName)
{
    folder.write("a");
    const auto file = openVerified("a");

    folder.link("a", "b");

    EXPECT_EQ(poll(file), 1);
}

TEST_F(ChangeNotifierTest, ReportsARenameOnceAndGoesOnAtTheNewName)
{
    folder.write("a");
    auto file = openVerified("a");

    file.url = folder.rename("a", "b");

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
    folder.append("b", "more");
    EXPECT_EQ(poll(file), 1);
}

TEST_F(ChangeNotifierTest, ReportsADeletionOnce)
{
    folder.write("a");
    const auto file = openVerified("a");

    folder.remove("a");

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
    EXPECT_EQ(notifier.watchCount(), 0u);
}

TEST_F(ChangeNotifierTest, ReportsAReplacementByRename)
{
    folder.write("a");
    folder.write("new");
    const auto file = openVerified("a");

    folder.rename("new", "a");

    EXPECT_EQ(poll(file), 1);
}

TEST_F(ChangeNotifierTest, ReportsEqualWritesAsOne)
{
    folder.write("a");
    const auto file = openVerified("a");

    for (int count = 0; count < 5; ++count)
        folder.append("a", "x");

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(poll(file), 0);
}

TEST_F(ChangeNotifierTest, DoesNotReportThatAFileIsRead)
{
    folder.write("a");
    const auto file = openVerified("a");

    EXPECT_EQ(folder.contents("a"), "text");

    EXPECT_EQ(poll(file), 0);
}

TEST_F(ChangeNotifierTest, WatchesALinkItselfAndNotItsTarget)
{
    folder.write("target");
    folder.symlink("target", "link");
    auto link = openVerified("link");

    folder.append("target", "more");
    EXPECT_EQ(poll(link), 0);

    link.url = folder.rename("link", "other");
    EXPECT_EQ(poll(link), 1);
}

class ChangeNotifierOfFolderTest : public ChangeNotifierTest {
protected:
    ChangeNotifierOfFolderTest()
    {
        folder.makeFolder("elsewhere");
        folder.write("elsewhere/file");
        folder.makeFolder("watched");
        folder.write("watched/child");
        folder.makeFolder("watched/inner");
        watched = openVerified("watched");
    }

    Watched watched;
};

TEST_F(ChangeNotifierOfFolderTest, ReportsANewEntry)
{
    folder.write("watched/new");

    EXPECT_EQ(poll(watched), 1);
    EXPECT_EQ(poll(watched), 0);
}

TEST_F(ChangeNotifierOfFolderTest, ReportsANewSubfolder)
{
    folder.makeFolder("watched/new");

    EXPECT_EQ(poll(watched), 1);
}

TEST_F(ChangeNotifierOfFolderTest, ReportsADeletedEntry)
{
    folder.remove("watched/child");

    EXPECT_EQ(poll(watched), 1);
}

TEST_F(ChangeNotifierOfFolderTest, ReportsARenamedEntry)
{
    folder.rename("watched/child", "watched/other");

    EXPECT_EQ(poll(watched), 1);
}

TEST_F(ChangeNotifierOfFolderTest, ReportsAnEntryThatIsMovedIn)
{
    folder.rename("elsewhere/file", "watched/file");

    EXPECT_EQ(poll(watched), 1);
}

TEST_F(ChangeNotifierOfFolderTest, ReportsAnEntryThatIsMovedOut)
{
    folder.rename("watched/child", "elsewhere/child");

    EXPECT_EQ(poll(watched), 1);
}

TEST_F(ChangeNotifierOfFolderTest, ReportsAnEntryThatIsReplaced)
{
    folder.rename("elsewhere/file", "watched/child");

    EXPECT_EQ(poll(watched), 1);
}

TEST_F(ChangeNotifierOfFolderTest, ReportsItsOwnPermissions)
{
    folder.chmod("watched", 0700);

    EXPECT_EQ(poll(watched), 1);
}

TEST_F(ChangeNotifierOfFolderTest, ReportsItsOwnRename)
{
    watched.url = folder.rename("watched", "other");

    EXPECT_EQ(poll(watched), 1);
}

TEST_F(ChangeNotifierOfFolderTest, ReportsItsOwnDeletion)
{
    folder.remove("watched");

    EXPECT_EQ(poll(watched), 1);
    EXPECT_EQ(poll(watched), 0);
}

TEST_F(ChangeNotifierOfFolderTest, DoesNotReportWritesIntoAnEntry)
{
    folder.append("watched/child", "more");

    EXPECT_EQ(poll(watched), 0);
}

TEST_F(ChangeNotifierOfFolderTest, DoesNotReportAnEntrysPermissionsAndTimes)
{
    folder.chmod("watched/child", 0600);
    folder.chmod("watched/inner", 0700);
    folder.setModificationTime("watched/child", 1000);

    EXPECT_EQ(poll(watched), 0);
}

TEST_F(ChangeNotifierOfFolderTest, DoesNotReportWhatHappensInASubfolder)
{
    folder.write("watched/inner/new");
    folder.remove("watched/inner/new");

    EXPECT_EQ(poll(watched), 0);
}

TEST_F(ChangeNotifierOfFolderTest, DoesNotReportARenameOfItsParent)
{
    folder.makeFolder("watched/inner/deep");
    auto deep = openVerified("watched/inner/deep");

    folder.rename("watched/inner", "watched/moved");
    deep.url = folder.folderUrl("watched/moved/deep");

    EXPECT_EQ(poll(deep), 0);
}

TEST_F(ChangeNotifierTest, SharesOneWatchAmongHardLinks)
{
    folder.write("a");
    folder.link("a", "b");
    const auto first = openVerified("a");
    const auto second = openVerified("b");
    EXPECT_EQ(notifier.watchCount(), 1u);

    folder.append("b", "more");

    EXPECT_EQ(poll(first), 1);
    EXPECT_EQ(poll(second), 1);
    EXPECT_EQ(poll(first), 0);
    EXPECT_EQ(poll(second), 0);
}

TEST_F(ChangeNotifierTest, KeepsASharedWatchUntilItsLastTokenIsClosed)
{
    folder.write("a");
    folder.link("a", "b");
    const auto first = openVerified("a");
    const auto second = openVerified("b");

    notifier.close(first.token);
    folder.append("a", "more");
    EXPECT_EQ(poll(second), 1);

    notifier.close(second.token);
    EXPECT_EQ(notifier.watchCount(), 0u);
}

TEST_F(ChangeNotifierTest, DoesNotReportToANewTokenWhatItsWatchSawBefore)
{
    folder.write("a");
    folder.link("a", "b");
    const auto first = openVerified("a");

    folder.append("a", "more");
    const auto second = open("b");

    EXPECT_EQ(poll(second), 0);
    EXPECT_EQ(poll(first), 1);
}

TEST_F(ChangeNotifierTest, DoesNotReportWhatHappenedBetweenCloseAndOpen)
{
    folder.write("a");
    notifier.close(openVerified("a").token);

    folder.append("a", "more");
    const auto file = open("a");

    EXPECT_EQ(poll(file), 0);
}

TEST_F(ChangeNotifierTest, WatchesWhateverIsThereForAnEmptyReference)
{
    folder.write("a");
    const auto file = open(zef::FSRef(), folder.url("a"));

    EXPECT_EQ(poll(file), 0);
    folder.append("a", "more");
    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(open(zef::FSRef(), folder.url("missing")).token, 0);
}

TEST_F(ChangeNotifierTest, TakesNoMemoryToReadEventsAndToAnswer)
{
    if (!AllocationCounter::isAvailable())
        GTEST_SKIP() << "a sanitizer has the heap";
    folder.write("a");
    const auto file = openVerified("a");
    int answers = 0;
    const auto pollInRound = [&] {
        folder.append("a", "more");
        const AllocationCounter counter;
        notifier.beginRound();
        answers += poll(file);
        notifier.endRound();
        return counter.count();
    };
    pollInRound();

    EXPECT_EQ(pollInRound(), 0u);
    EXPECT_EQ(answers, 2);
}

// Lets no further system call but exit pass: the child dies of any other.
bool forbidSystemCalls()
{
    struct sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(struct seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
    };
    const struct sock_fprog filter = { sizeof program / sizeof *program, program };
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
        && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST_F(ChangeNotifierTest, MakesNoSystemCallForAVerifiedTokenInARound)
{
    folder.write("a");
    folder.write("b");

    runInChildProcess([this] {
        const auto a = openVerified("a");
        const auto b = openVerified("b");
        folder.append("b", "more");
        notifier.beginRound();
        if (!forbidSystemCalls())
            GTEST_SKIP() << "this system filters no system calls";
        // Only the status can be handed out from here on.
        const bool isRight = poll(a) == 0 && poll(b) == 1 && poll(b) == 0;
        ::syscall(SYS_exit_group, isRight ? EXIT_SUCCESS : EXIT_FAILURE);
    });
}

} // namespace
