// SPDX-License-Identifier: MIT
#include "tests/support/WatchFixture.h"

#include <csignal>

namespace {

class WatchTextTest : public WatchFixture { };

TEST_F(WatchTextTest, SaysFirstWhatIsWatched)
{
    folder.makeFolder("empty");
    folder.write("w/a");
    folder.makeFolder("full");
    folder.write("full/a");
    folder.makeFolder("full/sub");

    start({ folder.path("empty"), folder.path("w"), folder.path("full") });

    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("empty") + " (0 files)");
    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("w") + " (1 file)");
    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("full") + " (2 files)");
}

TEST_F(WatchTextTest, ShowsANewFileAfterItsFolder)
{
    watch();
    folder.write("w/a");

    EXPECT_EQ(process->nextLine(), "updated          " + folder.path("w") + "/");
    EXPECT_EQ(process->nextLine(), "appeared         a");
}

TEST_F(WatchTextTest, ShowsAFolderWithASlash)
{
    watch();
    folder.makeFolder("w/sub");

    EXPECT_EQ(nextChange("appeared"), "appeared         sub/");
}

TEST_F(WatchTextTest, ShowsTheOldAndTheNewNameOfARenamedFileEachTime)
{
    folder.write("w/a");
    watch();

    folder.rename("w/a", "w/b");
    EXPECT_EQ(nextChange("renamed"), "renamed          a → b");
    folder.rename("w/b", "w/c");
    EXPECT_EQ(nextChange("renamed"), "renamed          b → c");
}

TEST_F(WatchTextTest, ShowsTheOldNameOfAFileThatAppearedLater)
{
    watch();

    folder.write("w/a");
    nextChange("appeared");
    folder.rename("w/a", "w/b");
    EXPECT_EQ(nextChange("renamed"), "renamed          a → b");
}

TEST_F(WatchTextTest, ShowsBothPathsOfAFileThatWasMovedAway)
{
    folder.write("w/a");
    watch();

    folder.rename("w/a", "b");

    EXPECT_EQ(
        nextChange("moved"), "moved            " + folder.path("w/a") + " → " + folder.path("b"));
}

TEST_F(WatchTextTest, ShowsTheNameOfARemovedFile)
{
    folder.write("w/a");
    watch();

    folder.remove("w/a");

    EXPECT_EQ(nextChange("removed"), "removed          a");
}

TEST_F(WatchTextTest, ShowsAWrittenFileWithTheNextChangeOfItsFolder)
{
    folder.write("w/a");
    folder.setModificationTime("w/a", 5);
    watch();

    folder.append("w/a", "more");
    folder.write("w/b");

    EXPECT_EQ(nextChange("updated"), "updated          " + folder.path("w") + "/");
    EXPECT_EQ(nextChange("updated"), "updated          a");
}

TEST_F(WatchTextTest, ShowsARenamedFolderAndItsFilesInIt)
{
    folder.write("w/a");
    watch();

    folder.rename("w", "v");

    EXPECT_EQ(nextChange("renamed"),
        "renamed          " + folder.path("w") + "/ → " + folder.path("v") + "/");
    EXPECT_EQ(nextChange("moved in parent"), "moved in parent  a");
}

TEST_F(WatchTextTest, ShowsAMovedFolder)
{
    folder.makeFolder("other");
    watch();

    folder.rename("w", "other/w");

    EXPECT_EQ(nextChange("moved"),
        "moved            " + folder.path("w") + "/ → " + folder.path("other/w") + "/");
}

TEST_F(WatchTextTest, ShowsARemovedFolderAndEnds)
{
    watch();

    folder.remove("w");

    EXPECT_EQ(process->nextLine(), "removed          " + folder.path("w") + "/");
    EXPECT_FALSE(process->nextLine());
    EXPECT_EQ(process->status(), 1);
    EXPECT_EQ(process->errorText(), "zef: nothing left to watch\n");
}

TEST_F(WatchTextTest, GoesOnWithTheFoldersThatAreLeft)
{
    folder.makeFolder("v");
    start({ folder.path("w"), folder.path("v") });
    ASSERT_TRUE(process->lineWith("/v ("));

    folder.remove("w");
    ASSERT_TRUE(process->lineWith("removed "));
    folder.write("v/a");
    EXPECT_TRUE(process->lineWith("appeared "));
    folder.remove("v");

    EXPECT_TRUE(process->lineWith("removed "));
    EXPECT_EQ(process->status(), 1);
}

TEST_F(WatchTextTest, EndsAlsoWhenAFolderWasFoundLostThroughItsParent)
{
    folder.makeFolder("w/sub");
    start({ folder.path("w"), folder.path("w/sub") });
    ASSERT_TRUE(process->lineWith("/sub ("));

    folder.remove("w/sub");
    EXPECT_EQ(nextChange("removed"), "removed          sub/");
    folder.remove("w");

    EXPECT_EQ(nextChange("removed"), "removed          " + folder.path("w") + "/");
    EXPECT_EQ(process->status(), 1);
}

TEST_F(WatchTextTest, PutsTheFolderAboveItsChangesWhenThereAreSeveral)
{
    folder.makeFolder("v");
    start({ folder.path("w"), folder.path("v") });
    ASSERT_TRUE(process->lineWith("/v ("));

    folder.write("w/a");
    EXPECT_EQ(process->nextLine(), folder.path("w") + ":");
    EXPECT_TRUE(process->lineWith("appeared "));
    folder.write("v/b");
    EXPECT_EQ(process->nextLine(), folder.path("v") + ":");
    EXPECT_TRUE(process->lineWith("appeared "));
    folder.write("v/c");
    EXPECT_EQ(process->nextLine(), "updated          " + folder.path("v") + "/");
}

TEST_F(WatchTextTest, EscapesWhatCouldDriveATerminal)
{
    const std::pair<std::string, std::string> names[] = {
        { "a\nb\tc\rd", R"(a\nb\tc\rd)" },
        { "\x1b[31mred\x7f", R"(\x1b[31mred\x7f)" },
        { "\u009b31m", R"(\u009b31m)" },
        { "a\xff\xc3z", "a\ufffd\ufffdz" },
        { "\u202egpj.exe", R"(\u202egpj.exe)" },
        { "räksmörgås \U0001f4c1", "räksmörgås \U0001f4c1" },
        { "back\\slash \"quoted\"", "back\\slash \"quoted\"" },
    };
    watch();

    for (const auto& [name, shown] : names) {
        folder.write("w/" + name);
        EXPECT_EQ(nextChange("appeared"), "appeared         " + shown);
    }
}

TEST_F(WatchTextTest, EscapesTheNameOfTheFolderToo)
{
    const std::string name = "x\x1b[2J\n";
    folder.makeFolder(name);

    start({ folder.path(name) });

    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("x\\x1b[2J\\n") + " (0 files)");
}

TEST_F(WatchTextTest, SaysWhenAFolderThatIsLoadedInTheBackgroundIsComplete)
{
    folder.write("w/a");
    folder.write("w/b");

    start({ "--async", folder.path("w") });

    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("w") + " (loading)");
    EXPECT_EQ(process->nextLine()->substr(0, 17), "appeared         ");
    EXPECT_EQ(process->nextLine()->substr(0, 17), "appeared         ");
    EXPECT_EQ(process->nextLine(), "Loaded " + folder.path("w") + " (2 files)");
    folder.rename("w/a", "w/c");
    EXPECT_EQ(nextChange("renamed"), "renamed          a → c");
}

TEST_F(WatchTextTest, WritesWithoutColorsIntoAPipe)
{
    watch({ .environment = { { "TERM", "xterm" }, { "NO_COLOR", std::nullopt } } });
    folder.write("w/a");
    EXPECT_EQ(nextChange("appeared"), "appeared         a");

    process->signal(SIGINT);

    EXPECT_EQ(process->rest(), "");
    EXPECT_EQ(process->status(), 130);
    EXPECT_EQ(process->errorText(), "");
}

TEST_F(WatchTextTest, TakesPlainFileItems)
{
    start({ "--plain", folder.path("w") });

    EXPECT_EQ(process->nextLine(), "Watching " + folder.path("w") + " (0 files)");
}

} // namespace
