// SPDX-License-Identifier: MIT
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ZefProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace {

/// What holds for each command of the program.
class EveryCommandTest : public testing::Test {
protected:
    struct Run {
        std::vector<std::string> arguments;
        std::string input{};
    };

    EveryCommandTest()
    {
        folder.write(hostileName);
        folder.makeFolder("d");
        archive = ZefProcess::run({ "archive", folder.path(hostileName) }).output;
    }

    /// The commands that print files and end, with something that can't be done for each.
    std::vector<Run> listings(const std::vector<std::string>& options) const
    {
        const auto missing = folder.path("missing");
        std::vector<Run> runs{
            { { "find", folder.path(), missing } },
            { { "list", folder.path() } },
            { { "info", folder.path(hostileName), missing } },
            { { "resolve" }, archive + "nonsense\n" },
        };
        for (auto& run : runs)
            run.arguments.insert(run.arguments.begin() + 1, options.begin(), options.end());
        return runs;
    }

    static std::vector<std::string> linesOf(const std::string& text)
    {
        std::vector<std::string> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }

    static constexpr auto hostileName = "a\n\x1b[31m\x7f\xc2\x9b\xff";

    TemporaryFolder folder;
    std::string archive;
};

TEST_F(EveryCommandTest, PrintsNothingButObjectsAsJSONWhateverElseHappens)
{
    auto runs = listings({ "--json" });
    runs.push_back({ { "archive", folder.path(hostileName), folder.path("missing") } });
    for (const auto& run : runs) {
        const auto result = ZefProcess::run(run.arguments, run.input);
        const auto lines = linesOf(result.output);
        EXPECT_FALSE(lines.empty()) << run.arguments[0];
        for (const auto& line : lines) {
            ASSERT_TRUE(nlohmann::json::accept(line)) << line;
            EXPECT_TRUE(nlohmann::json::parse(line).is_object()) << line;
        }
    }
}

TEST_F(EveryCommandTest, TellsOfEachFailureInOneLineAndDoesTheRest)
{
    auto runs = listings({});
    runs.push_back({ { "archive", folder.path(hostileName), folder.path("missing") } });
    std::erase_if(runs, [](const Run& run) { return run.arguments[0] == "list"; });
    for (const auto& run : runs) {
        const auto result = ZefProcess::run(run.arguments, run.input);
        EXPECT_EQ(result.status, 1) << run.arguments[0];
        EXPECT_EQ(linesOf(result.errors).size(), 1u) << result.errors;
        EXPECT_TRUE(result.errors.starts_with("zef: ")) << result.errors;
        EXPECT_FALSE(result.output.empty()) << run.arguments[0];
    }
}

TEST_F(EveryCommandTest, ShowsNamesThatCanNotDriveATerminal)
{
    for (const auto& run : listings({})) {
        const auto result = ZefProcess::run(run.arguments, run.input);
        EXPECT_NE(result.output.find("a\\n\\x1b[31m\\x7f\\u009b\ufffd"), std::string::npos)
            << result.output;
        for (const auto* bytes : { "\x1b", "\x7f", "\xc2\x9b", "\xff" })
            EXPECT_EQ(result.output.find(bytes), std::string::npos) << run.arguments[0];
    }
}

TEST_F(EveryCommandTest, ShowsNoColorsInAPipeNorWithNoColor)
{
    const ZefProcess::Settings terminal{ .streams = ZefProcess::Streams::terminal,
        .environment = { { "TERM", "xterm" }, { "NO_COLOR", "1" } } };
    const ZefProcess::Settings pipes{ .environment = {
                                          { "TERM", "xterm" }, { "NO_COLOR", std::nullopt } } };
    for (const auto& run : listings({})) {
        EXPECT_EQ(ZefProcess::run(run.arguments, run.input, pipes).output.find('\x1b'),
            std::string::npos);
        if (!run.input.empty())
            continue;
        ZefProcess sober(run.arguments, terminal);
        EXPECT_EQ(sober.rest().find('\x1b'), std::string::npos) << run.arguments[0];
    }
}

TEST_F(EveryCommandTest, EndsQuietlyWhenNobodyReads)
{
    const auto file = folder.path(hostileName);
    for (const auto& arguments : std::vector<std::vector<std::string>>{ { "--help" },
             { "--version" }, { "find", folder.path() }, { "list", folder.path() },
             { "info", file }, { "archive", file }, { "resolve" }, { "watch", folder.path() } }) {
        ZefProcess process(arguments, { .nobodyReads = true });
        if (arguments[0] == "resolve")
            process.send(archive);
        process.closeInput();
        EXPECT_EQ(process.status(), 0) << arguments[0];
        EXPECT_EQ(process.errorText(), "") << arguments[0];
    }
}

TEST_F(EveryCommandTest, SaysWhenItsOutputCanNotBeWritten)
{
    auto runs = listings({});
    runs.push_back({ { "archive", folder.path() } });
    runs.push_back({ { "watch", folder.path() } });
    runs.push_back({ { "list", "--help" } });
    for (const auto& run : runs) {
        const auto result = ZefProcess::run(run.arguments, run.input, { .closed = { 1 } });
        EXPECT_EQ(result.status, 1) << run.arguments[0];
        EXPECT_NE(
            result.errors.find("zef: standard output: Bad file descriptor\n"), std::string::npos)
            << run.arguments[0] << ": " << result.errors;
    }
}

} // namespace
