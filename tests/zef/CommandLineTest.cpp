// SPDX-License-Identifier: MIT
#include "tests/support/ZefProcess.h"

#include <gtest/gtest.h>

namespace {

class CommandLineTest : public testing::Test {
protected:
    static bool contains(const std::string& text, const std::string& part)
    {
        return text.find(part) != std::string::npos;
    }

    /// Wrong usage says why on standard error and nothing else.
    static void expectWrongUsage(
        const std::vector<std::string>& arguments, const std::string& reason)
    {
        ZefProcess process(arguments);
        EXPECT_EQ(process.rest(), "");
        EXPECT_EQ(process.status(), 2);
        EXPECT_EQ(process.errorText().rfind("zef: ", 0), 0u);
        EXPECT_TRUE(contains(process.errorText(), reason)) << process.errorText();
    }
};

TEST_F(CommandLineTest, TellsItsVersion)
{
    ZefProcess process({ "--version" });

    EXPECT_EQ(process.rest(), "zef 2.0.0\n");
    EXPECT_EQ(process.status(), 0);
    EXPECT_EQ(process.errorText(), "");
}

TEST_F(CommandLineTest, HelpsWithTheProgramAndWithEachCommand)
{
    ZefProcess program({ "--help" });
    const auto text = program.rest();
    for (const auto* name :
        { "watch", "find", "list", "info", "archive", "resolve", "trash", "serve", "--version" })
        EXPECT_TRUE(contains(text, name)) << name;
    EXPECT_EQ(program.status(), 0);

    ZefProcess watch({ "watch", "--help" });
    const auto watchText = watch.rest();
    for (const auto* option : { "--interval", "--async", "--plain", "--json", "FOLDER" })
        EXPECT_TRUE(contains(watchText, option)) << option;
    EXPECT_EQ(watch.status(), 0);

    const auto findText = ZefProcess::run({ "find", "--help" }).output;
    for (const auto* option : { "--depth", "--visible", "--normal", "--plain", "--json", "PATH" })
        EXPECT_TRUE(contains(findText, option)) << option;
    const auto infoText = ZefProcess::run({ "info", "--help" }).output;
    for (const auto* option : { "--plain", "--json", "PATH" })
        EXPECT_TRUE(contains(infoText, option)) << option;
    const auto listText = ZefProcess::run({ "list", "--help" }).output;
    for (const auto* option : { "--plain", "--json", "FOLDER" })
        EXPECT_TRUE(contains(listText, option)) << option;
    EXPECT_TRUE(contains(ZefProcess::run({ "trash", "--help" }).output, "PATH"));
    const auto archiveText = ZefProcess::run({ "archive", "--help" }).output;
    EXPECT_TRUE(contains(archiveText, "--plain") && contains(archiveText, "PATH"));
    const auto resolveText = ZefProcess::run({ "resolve", "--help" }).output;
    EXPECT_TRUE(contains(resolveText, "--plain") && contains(resolveText, "--json"));

    ZefProcess serve({ "serve", "--help" });
    EXPECT_TRUE(contains(serve.rest(), "JSON-RPC"));
    EXPECT_EQ(serve.status(), 0);
}

TEST_F(CommandLineTest, RefusesWrongUsage)
{
    expectWrongUsage({}, "subcommand");
    expectWrongUsage({ "nonsense" }, "nonsense");
    expectWrongUsage({ "" }, "command");
    expectWrongUsage({ "--nonsense" }, "");
    expectWrongUsage({ "watch" }, "FOLDER");
    expectWrongUsage({ "watch", "--nonsense", "/tmp" }, "--nonsense");
    expectWrongUsage({ "find" }, "PATH");
    expectWrongUsage({ "find", "--plain", "--visible", "/tmp" }, "--visible");
    expectWrongUsage({ "find", "--normal", "--plain", "/tmp" }, "--normal");
    expectWrongUsage({ "list" }, "FOLDER");
    expectWrongUsage({ "list", "/tmp", "/" }, "/");
    expectWrongUsage({ "info" }, "PATH");
    expectWrongUsage({ "archive", "--json", "/tmp" }, "--json");
    expectWrongUsage({ "resolve", "extra" }, "extra");
    expectWrongUsage({ "trash" }, "PATH");
    expectWrongUsage({ "trash", "--json", "/tmp" }, "--json");
    expectWrongUsage({ "info", "--depth", "1", "/tmp" }, "--depth");
    expectWrongUsage({ "serve", "extra" }, "extra");
}

TEST_F(CommandLineTest, RefusesAnIntervalThatIsNoPositiveNumberOfSeconds)
{
    for (const auto* interval : { "0", "-1", "nan", "inf", "1e300", "1e-60", "", "x", "1x" })
        expectWrongUsage({ "watch", "--interval", interval, "/tmp" }, "--interval");
    expectWrongUsage({ "watch", "/tmp", "--interval" }, "--interval");
}

TEST_F(CommandLineTest, RefusesADepthThatIsNoWholeNumber)
{
    for (const auto* depth : { "", "x", "1x", "1.5", "99999999999999999999" })
        expectWrongUsage({ "find", "--depth", depth, "/tmp" }, "--depth");
    expectWrongUsage({ "find", "/tmp", "--depth" }, "--depth");
}

TEST_F(CommandLineTest, SaysWhenItsOutputCannotBeWritten)
{
    ZefProcess process({ "--version" }, { .closed = { 1 } });

    EXPECT_EQ(process.status(), 1);
    EXPECT_EQ(process.errorText(), "zef: standard output: Bad file descriptor\n");
}

} // namespace
