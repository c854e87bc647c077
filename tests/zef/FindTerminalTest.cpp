// SPDX-License-Identifier: MIT
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ZefProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

namespace {

using Names = std::vector<std::string>;

/// What a terminal shows of the text that a program writes without escape sequences; a byte takes a
/// column.
class Screen {
public:
    explicit Screen(const std::string& text)
    {
        for (const char byte : text)
            take(byte);
    }

    /// The lines without the blanks at their ends; empty ones at the end are left out.
    Names lines() const
    {
        auto result = _lines;
        for (auto& line : result)
            line.erase(line.find_last_not_of(' ') + 1);
        while (!result.empty() && result.back().empty())
            result.pop_back();
        return result;
    }

    std::size_t column() const { return _column; }
    std::size_t widest() const { return _widest; }

private:
    void take(char byte)
    {
        if (byte == '\r') {
            _column = 0;
        } else if (byte == '\n') {
            _lines.emplace_back();
        } else {
            auto& line = _lines.back();
            line.resize(std::max(line.size(), _column + 1), ' ');
            line[_column++] = byte;
            _widest = std::max(_widest, _column);
        }
    }

    Names _lines{ "" };
    std::size_t _column = 0;
    std::size_t _widest = 0;
};

class FindTerminalTest : public testing::Test {
protected:
    void start(Names arguments)
    {
        arguments.insert(arguments.begin(), "find");
        settings.streams = ZefProcess::Streams::terminal;
        process = std::make_unique<ZefProcess>(arguments, settings);
    }

    std::string outputOf(const Names& arguments)
    {
        start(arguments);
        return process->rest();
    }

    /// What stands between the start or end of a line and the next blank line in its place.
    static bool shows(const std::string& output, const std::string& text)
    {
        return output.find(text + "\r ") != std::string::npos;
    }

    TemporaryFolder folder;
    ZefProcess::Settings settings;
    std::unique_ptr<ZefProcess> process;
};

TEST_F(FindTerminalTest, ShowsHowFarItIs)
{
    folder.write("a");

    const auto output = outputOf({ folder.path() });

    EXPECT_TRUE(shows(output, "2 files: " + folder.path())) << output;
    EXPECT_EQ(process->status(), 0);
}

TEST_F(FindTerminalTest, ShowsASingleFileAsOne)
{
    folder.write("a");

    EXPECT_TRUE(shows(outputOf({ folder.path("a") }), "1 file: " + folder.path("a")));
}

TEST_F(FindTerminalTest, LeavesNothingOfTheProgressBehind)
{
    folder.write("a");

    const Screen screen(outputOf({ folder.path() }));

    EXPECT_EQ(screen.lines(), Names({ folder.path("a"), folder.path() }));
    EXPECT_EQ(screen.column(), 0u);
}

TEST_F(FindTerminalTest, LeavesNothingBehindWhereItFindsNothing)
{
    folder.write(".hidden");

    const Screen screen(outputOf({ "--visible", folder.path(".hidden") }));

    EXPECT_TRUE(screen.lines().empty());
    EXPECT_EQ(process->status(), 0);
}

TEST_F(FindTerminalTest, ShowsNoMoreThanTheTerminalIsWide)
{
    settings.columns = 40;
    const std::string name(100, 'n');
    folder.write(name);

    const auto output = outputOf({ folder.path(name) });

    const auto progress = output.substr(0, output.find('\r'));
    EXPECT_EQ(progress, "1 file: \u2026" + std::string(28, 'n'));
    EXPECT_EQ(Screen(output.substr(0, output.rfind('\r', output.find(folder.path())))).widest(),
        std::size_t{ 39 });
}

TEST_F(FindTerminalTest, CountsWideCharactersTwice)
{
    settings.columns = 20;
    const std::string name = "\u6f22\u5b57\u6f22\u5b57\u6f22\u5b57";
    folder.write(name);

    const auto output = outputOf({ folder.path(name) });

    EXPECT_EQ(output.substr(0, output.find('\r')), "1 file: \u2026\u6f22\u5b57\u6f22\u5b57");
}

TEST_F(FindTerminalTest, ShowsTheNumberAloneOnANarrowTerminal)
{
    settings.columns = 11;
    folder.write("a");

    const auto output = outputOf({ folder.path() });

    EXPECT_EQ(output.substr(0, output.find('\r')), "2 files");
}

TEST_F(FindTerminalTest, ShowsNothingThatDrivesTheTerminal)
{
    folder.write("\x1b[31m\n\r\x07");

    const auto output = outputOf({ folder.path("\x1b[31m\n\r\x07") });

    const auto shown = folder.path("\\x1b[31m\\n\\r\\x07");
    EXPECT_TRUE(shows(output, "1 file: " + shown)) << output;
    EXPECT_EQ(Screen(output).lines(), Names({ shown }));
    EXPECT_EQ(output.find('\x1b'), std::string::npos);
}

TEST_F(FindTerminalTest, CancelsAtControlCAndLeavesACleanTerminal)
{
    start({ folder.path("missing"), "/usr" });
    ASSERT_TRUE(process->lineWith("No such file"));

    process->send("\x03");

    const Screen screen(process->rest());
    EXPECT_TRUE(screen.lines().empty()) << screen.lines()[0];
    EXPECT_EQ(screen.column(), 0u);
    EXPECT_EQ(process->status(), 130);
}

TEST_F(FindTerminalTest, EndsWithTheStatusOfATermination)
{
    start({ folder.path("missing"), "/usr" });
    ASSERT_TRUE(process->lineWith("No such file"));

    process->signal(SIGTERM);

    EXPECT_EQ(process->status(), 143);
}

} // namespace
