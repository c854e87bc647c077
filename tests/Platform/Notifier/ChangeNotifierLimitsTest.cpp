// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/NotifierFixture.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// What holds when the system has no more watches, queues or events to give.
class ChangeNotifierLimitsTest : public NotifierFixture {
protected:
    // More events on "flooded" than the queue holds; two names in turn, because equal events that
    // follow each other count as one.
    void flood()
    {
        std::size_t limit = 0;
        std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> limit;
        for (std::size_t count = 0; count <= limit; count += 4) {
            folder.rename("flooded/x", "flooded/y");
            folder.rename("flooded/y", "flooded/x");
        }
    }

    void makeFlooded()
    {
        folder.makeFolder("flooded");
        folder.write("flooded/x");
    }

    void expectOneChange(const Watched& file)
    {
        folder.append("a", "more");
        EXPECT_EQ(poll(file), 1);
        EXPECT_EQ(poll(file), 0);
    }

    // Enters a namespace in which this user may mount (user_namespaces(7)); only in a child
    // process.
    static bool enterNamespace()
    {
        const auto map = [](auto id) {
            return std::to_string(id) + " " + std::to_string(id) + " 1";
        };
        const auto users = map(::geteuid());
        const auto groups = map(::getegid());
        return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && put("/proc/self/uid_map", users)
            && put("/proc/self/setgroups", "deny") && put("/proc/self/gid_map", groups);
    }

    // Limits what this user may have in the namespace (namespaces(7)).
    static bool limitUser(const std::string& limit, int value)
    {
        return put("/proc/sys/user/" + limit, std::to_string(value));
    }

    static bool put(const std::string& path, const std::string& text)
    {
        std::ofstream file(path);
        file << text << std::flush;
        return static_cast<bool>(file);
    }
};

TEST_F(ChangeNotifierLimitsTest, ReportsToEveryTokenWhenEventsWereLost)
{
    makeFlooded();
    folder.write("quiet");
    const auto flooded = openVerified("flooded");
    const auto quiet = openVerified("quiet");

    flood();

    EXPECT_EQ(poll(quiet), 1);
    EXPECT_EQ(poll(quiet), 0);
    EXPECT_EQ(poll(flooded), 1);
    EXPECT_EQ(poll(flooded), 0);
}

TEST_F(ChangeNotifierLimitsTest, GoesOnByEventsAfterSomeWereLost)
{
    makeFlooded();
    folder.write("a");
    openVerified("flooded");
    const auto file = openVerified("a");
    flood();
    EXPECT_EQ(poll(file), 1);

    folder.append("a", "more");

    EXPECT_EQ(poll(file), 1);
    EXPECT_FALSE(notifier.comparesStamps(file.token));
}

TEST_F(ChangeNotifierLimitsTest, NoticesTheEndOfAWatchThatWasLost)
{
    makeFlooded();
    folder.write("a");
    openVerified("flooded");
    const auto file = openVerified("a");
    flood();
    folder.remove("a");

    EXPECT_EQ(poll(file), 1);
    EXPECT_TRUE(notifier.comparesStamps(file.token));
    EXPECT_EQ(notifier.watchCount(), 1u);
}

TEST_F(ChangeNotifierLimitsTest, ComparesStampsBeyondTheWatchLimit)
{
    folder.write("a");
    folder.write("b");
    notifier.setWatchLimit(1);
    const auto first = open("a");
    const auto second = open("b");

    EXPECT_FALSE(notifier.comparesStamps(first.token));
    EXPECT_TRUE(notifier.comparesStamps(second.token));
    EXPECT_EQ(notifier.watchCount(), 1u);
    EXPECT_EQ(poll(second), 0);
    folder.append("b", "more");
    EXPECT_EQ(poll(second), 1);
    EXPECT_EQ(poll(second), 0);
}

TEST_F(ChangeNotifierLimitsTest, KeepsTheWatchLimitWhenATokenLeavesASharedWatch)
{
    folder.write("a");
    folder.write("b");
    const auto refOfA = ref("a");
    const auto other = openVerified("b");
    folder.exchange("a", "b");
    notifier.setWatchLimit(2);
    const auto file = open(refOfA, folder.url("a")); // shares the watch of "b"
    folder.exchange("a", "b");
    notifier.setWatchLimit(1);

    EXPECT_EQ(poll(file), 1);
    EXPECT_EQ(notifier.watchCount(), 1u);
    EXPECT_TRUE(notifier.comparesStamps(file.token));
    EXPECT_FALSE(notifier.comparesStamps(other.token));
}

TEST_F(ChangeNotifierLimitsTest, UsesAWatchThatBecameFree)
{
    folder.write("a");
    folder.write("b");
    notifier.setWatchLimit(1);
    notifier.close(open("a").token);

    EXPECT_FALSE(notifier.comparesStamps(open("b").token));
}

TEST_F(ChangeNotifierLimitsTest, ComparesStampsWhenTheSystemHasNoMoreWatches)
{
    folder.write("a");
    folder.write("b");

    runInChildProcess([this] {
        if (!enterNamespace() || !limitUser("max_inotify_watches", 1))
            GTEST_SKIP() << "no user namespace";
        const auto other = open("b");
        const auto file = open("a");

        EXPECT_TRUE(notifier.comparesStamps(file.token));
        EXPECT_FALSE(notifier.comparesStamps(other.token));
        EXPECT_EQ(notifier.watchCount(), 1u);
        expectOneChange(file);
    });
}

TEST_F(ChangeNotifierLimitsTest, ComparesStampsWhenTheSystemHasNoMoreQueues)
{
    folder.write("a");

    runInChildProcess([this] {
        if (!enterNamespace() || !limitUser("max_inotify_instances", 0))
            GTEST_SKIP() << "no user namespace";
        EXPECT_GE(notifier.createQueue(), 0);
        const auto file = open("a");

        EXPECT_TRUE(notifier.comparesStamps(file.token));
        expectOneChange(file);
    });
}

TEST_F(ChangeNotifierLimitsTest, ComparesStampsWhenTheProcessHasNoMoreDescriptors)
{
    folder.write("a");

    runInChildProcess([this] {
        const auto reference = ref("a");
        const struct rlimit none = { 0, 0 };
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
        EXPECT_GE(notifier.createQueue(), 0);
        const auto file = open(reference, folder.url("a"));

        EXPECT_TRUE(notifier.comparesStamps(file.token));
        EXPECT_EQ(poll(file), 0);
        folder.chmod("a", 0600);
        EXPECT_EQ(poll(file), 1);
        EXPECT_EQ(poll(file), 0);
    });
}

TEST_F(ChangeNotifierLimitsTest, ComparesStampsOfWhatMayNotBeRead)
{
    WithoutPrivileges ordinaryUser;
    folder.makeFolder("a");
    folder.chmod("a", 0333);
    const auto watched = open("a");

    EXPECT_TRUE(notifier.comparesStamps(watched.token));
    EXPECT_EQ(poll(watched), 0);
    folder.write("a/new");
    EXPECT_EQ(poll(watched), 1);
    EXPECT_EQ(poll(watched), 0);
}

TEST_F(ChangeNotifierLimitsTest, ComparesStampsWhereTheSystemMakesFilesUp)
{
    zef::Stat status;
    ASSERT_EQ(zef::FileSystem::shared().statLink("/proc/version", status), 0);
    const auto url = zef::FileURL::fromPath("/proc/version", zef::URLKind::file);

    const auto file = open(zef::FSRef(status), url);

    EXPECT_GT(file.token, 0);
    EXPECT_TRUE(notifier.comparesStamps(file.token));
    EXPECT_EQ(notifier.watchCount(), 0u);
}

TEST_F(ChangeNotifierLimitsTest, ReportsAVolumeThatIsUnmountedAndItsReturn)
{
    folder.makeFolder("volume");

    runInChildProcess([this] {
        const auto mount = [this] {
            return ::mount("none", folder.path("volume").c_str(), "tmpfs", 0, "mode=0755") == 0;
        };
        if (!enterNamespace() || !mount())
            GTEST_SKIP() << "no user namespace in which to mount";
        folder.write("volume/file");
        const auto file = open("volume/file");
        EXPECT_EQ(poll(file), 0);
        EXPECT_FALSE(notifier.comparesStamps(file.token));

        ASSERT_EQ(::umount(folder.path("volume").c_str()), 0);
        EXPECT_EQ(poll(file), 1);
        EXPECT_EQ(poll(file), 0);
        EXPECT_EQ(notifier.watchCount(), 0u);

        ASSERT_TRUE(mount());
        folder.write("volume/file");
        EXPECT_EQ(poll(file), 1);
        ::umount(folder.path("volume").c_str());
    });
}

} // namespace
