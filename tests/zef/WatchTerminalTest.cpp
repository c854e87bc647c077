// SPDX-License-Identifier: MIT
#include "tests/support/WatchFixture.h"

#include <csignal>

namespace {

constexpr auto controlC = "\x03";
constexpr auto reset = "\x1b[0m";

class WatchTerminalTest : public WatchFixture {
protected:
    static ZefProcess::Settings terminal(
        std::map<std::string, std::optional<std::string>> environment = {})
    {
        ZefProcess::Settings settings;
        settings.streams = ZefProcess::Streams::terminal;
        settings.environment = std::move(environment);
        settings.environment.try_emplace("TERM", "xterm");
        settings.environment.try_emplace("NO_COLOR", std::nullopt);
        return settings;
    }

    /// The line that reports a new file.
    std::string lineOfNewFile()
    {
        folder.write("w/a");
        return process->lineWith("appeared").value_or("");
    }
};

TEST_F(WatchTerminalTest, ColorsTheEventAlone)
{
    watch(terminal());

    EXPECT_EQ(lineOfNewFile(), "\x1b[32mappeared\x1b[0m         a");
}

TEST_F(WatchTerminalTest, EndsEveryColorWithinItsLine)
{
    folder.makeFolder("v");
    folder.write("w/a");
    start({ folder.path("w"), folder.path("v") }, terminal());
    ASSERT_TRUE(process->lineWith("/v ("));

    folder.rename("w/a", "w/b");
    folder.write("w/c");
    folder.makeFolder("v/d");
    folder.rename("v/d", "d");
    folder.remove("w");
    folder.remove("v");

    while (const auto line = process->nextLine()) {
        const auto lastEscape = line->rfind('\x1b');
        if (lastEscape != std::string::npos) {
            EXPECT_EQ(line->compare(lastEscape, 4, reset), 0) << *line;
        }
    }
    EXPECT_EQ(process->status(), 1);
}

TEST_F(WatchTerminalTest, ShowsNoColorsWhenTheyAreNotWanted)
{
    watch(terminal({ { "NO_COLOR", "1" } }));

    EXPECT_EQ(lineOfNewFile(), "appeared         a");
}

TEST_F(WatchTerminalTest, ShowsNoColorsWhenNoColorIsSetToNothing)
{
    watch(terminal({ { "NO_COLOR", "" } }));

    EXPECT_EQ(lineOfNewFile(), "appeared         a");
}

TEST_F(WatchTerminalTest, ShowsNoColorsOnATerminalThatHasNone)
{
    watch(terminal({ { "TERM", "dumb" } }));

    EXPECT_EQ(lineOfNewFile(), "appeared         a");
}

TEST_F(WatchTerminalTest, LeavesTheTerminalOnALineOfItsOwn)
{
    watch(terminal());

    process->send(controlC);

    EXPECT_EQ(process->rest(), "^C\r\n");
    EXPECT_EQ(process->status(), 130);
}

TEST_F(WatchTerminalTest, EndsWithTheStatusOfATermination)
{
    watch(terminal());

    process->signal(SIGTERM);

    EXPECT_EQ(process->status(), 143);
}

TEST_F(WatchTerminalTest, EndsQuietlyWhenNobodyReadsAnyMore)
{
    watch();

    process->closeOutput();

    EXPECT_EQ(process->status(), 0);
    EXPECT_EQ(process->errorText(), "");
}

} // namespace
