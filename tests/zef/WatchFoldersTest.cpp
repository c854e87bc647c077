// SPDX-License-Identifier: MIT
#include "tests/support/WatchFixture.h"

#include <csignal>

namespace {

class WatchFoldersTest : public WatchFixture {
protected:
    /// Nothing can be watched, and standard error says why.
    void expectFailure(const std::string& argument, const std::string& reason,
        const ZefProcess::Settings& settings = {})
    {
        start({ argument }, settings);
        EXPECT_EQ(process->rest(), "");
        EXPECT_EQ(process->status(), 1);
        EXPECT_EQ(process->errorText(),
            "zef: " + argument + ": " + reason + "\nzef: nothing left to watch\n");
    }
};

TEST_F(WatchFoldersTest, SaysThatAFolderIsMissing)
{
    expectFailure(folder.path("missing"), "No such file or directory");
    expectFailure("", "No such file or directory");
}

TEST_F(WatchFoldersTest, SaysThatAFileIsNoFolder)
{
    folder.write("file");

    expectFailure(folder.path("file"), "Not a directory");
    expectFailure(folder.path("file/inside"), "Not a directory");
}

TEST_F(WatchFoldersTest, SaysThatAPathIsTooLong)
{
    expectFailure("/" + std::string(5000, 'a'), "File name too long");
}

TEST_F(WatchFoldersTest, SaysThatAFolderMayNotBeReadOrSearched)
{
    for (const auto mode : { 0000u, 0400u, 0100u }) {
        folder.chmod("w", mode);
        expectFailure(folder.path("w"), "Permission denied", { .withoutPrivileges = true });
    }
}

TEST_F(WatchFoldersTest, WatchesTheRestOfTheFolders)
{
    start({ folder.path("missing"), folder.path("w") });
    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("w") + " (0 files)");
    folder.write("w/a");
    EXPECT_TRUE(process->lineWith("appeared "));

    process->signal(SIGINT);

    EXPECT_EQ(process->status(), 130);
    EXPECT_EQ(
        process->errorText(), "zef: " + folder.path("missing") + ": No such file or directory\n");
}

TEST_F(WatchFoldersTest, WatchesAFolderOnceHoweverOftenItIsNamed)
{
    start({ folder.path("w"), folder.path("w") + "/", folder.path("w") });
    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("w") + " (0 files)");

    folder.write("w/a");

    EXPECT_EQ(process->nextLine(), folder.path("w") + ":");
    EXPECT_TRUE(process->lineWith("appeared "));
}

TEST_F(WatchFoldersTest, WatchesTheFolderThatALinkLeadsTo)
{
    folder.symlink("w", "link");

    start({ folder.path("link") + "/" });

    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("w") + " (0 files)");
    folder.write("w/a");
    EXPECT_TRUE(process->lineWith("appeared "));
}

TEST_F(WatchFoldersTest, KeepsTheSpellingOfAPathBelowALink)
{
    folder.symlink(".", "here");

    start({ folder.path("here/w") });

    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("here/w") + " (0 files)");
}

TEST_F(WatchFoldersTest, TakesEveryNameAsItIs)
{
    const std::vector<std::string> names{ "[a,b]", "[]", "{}", "%%", "a=b", "watch", " ", "\"q\"",
        "-x", "--json", "--" };
    std::vector<std::string> arguments{ "w", "--" };
    for (const auto& name : names) {
        folder.makeFolder(name);
        arguments.push_back(name);
    }

    start(arguments, { .folder = folder.path() });

    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("w") + " (0 files)");
    for (const auto& name : names)
        EXPECT_EQ(process->nextLine(), "Watching " + folder.path(name) + " (0 files)");
}

TEST_F(WatchFoldersTest, TakesRelativePaths)
{
    for (const auto* path : { "w", "./w", "w/.", "w/../w" }) {
        start({ path }, { .folder = folder.path() });
        EXPECT_EQ(process->nextLine(), "Watching " + folder.path("w") + " (0 files)") << path;
    }
}

TEST_F(WatchFoldersTest, ReportsTheRenamingOfTheCurrentFolderAsSuch)
{
    start({ "." }, { .folder = folder.path("w") });
    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("w") + " (0 files)");

    folder.rename("w", "v");

    EXPECT_EQ(process->nextLine(),
        "renamed          " + folder.path("w") + "/ → " + folder.path("v") + "/");
}

// A file with a name in each of two folders loses both at once: what the second subscription finds
// is worth a line in the log.
TEST_F(WatchFoldersTest, WritesWhatTheLibraryLogsToStandardError)
{
    folder.makeFolder("v");
    folder.write("w/\na");
    folder.link("w/\na", "v/b");
    start({ folder.path("w"), folder.path("v") });
    ASSERT_TRUE(process->lineWith("/v ("));

    process->standStill();
    folder.remove("w/\na");
    folder.remove("v/b");
    process->goOn();
    ASSERT_TRUE(process->lineWith("/v/"));
    process->signal(SIGINT);

    EXPECT_EQ(process->status(), 130);
    const auto log = process->errorText();
    EXPECT_EQ(log.rfind("zef: Error in ZEFDirectorySubscription: apparently failed", 0), 0u) << log;
    EXPECT_EQ(log.find('\n'), log.size() - 1) << log;
}

TEST_F(WatchFoldersTest, ReportsWhatHappenedWhileItStoodStill)
{
    folder.write("w/a");
    watch();

    process->standStill();
    folder.rename("w/a", "w/b");
    folder.write("w/c");
    folder.makeFolder("w/d");
    folder.remove("w/d");
    process->goOn();

    EXPECT_EQ(process->nextLine(), "updated          " + folder.path("w") + "/");
    EXPECT_EQ(process->nextLine(), "renamed          a → b");
    EXPECT_EQ(process->nextLine(), "appeared         c");
}

} // namespace
