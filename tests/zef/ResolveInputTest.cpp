// SPDX-License-Identifier: MIT
#include "tests/support/ArchiveFixture.h"

#include <csignal>

namespace {

class ResolveInputTest : public ArchiveFixture {
protected:
    ResolveInputTest() { folder.write("a"); }

    std::string lineOf(const JSON& archive) { return archive.dump() + '\n'; }

    std::string goodLine() { return lineOf({ { "ZEFArchivePathKey", folder.path("a") } }); }

    /// The line can't be read, which the program says of its number; the lines around it can.
    void expectRefusal(const std::string& line, const std::string& reason)
    {
        const auto result = resolve(goodLine() + line + '\n' + goodLine());

        EXPECT_EQ(lines(result.output), (Names{ folder.path("a"), folder.path("a") })) << line;
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.errors.rfind("zef: line 2: ", 0), 0u) << result.errors;
        EXPECT_NE(result.errors.find(reason), std::string::npos) << result.errors;
        EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << result.errors;
    }
};

TEST_F(ResolveInputTest, HasNothingToDoWithoutInput)
{
    const auto result = resolve("");

    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(ResolveInputTest, FindsAFileByItsPathAlone)
{
    const auto result = resolve(goodLine());

    EXPECT_EQ(result.output, folder.path("a") + "\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(ResolveInputTest, TakesTheLastLineWithoutItsEnd)
{
    auto line = goodLine();
    line.pop_back();

    EXPECT_EQ(resolve(line).output, folder.path("a") + "\n");
}

TEST_F(ResolveInputTest, NamesLinesThatAreNoJson)
{
    expectRefusal("x", "no JSON at byte 1");
    expectRefusal("", "no JSON at byte 1");
    expectRefusal("{\"ZEFArchivePathKey\":", "no JSON");
    expectRefusal("{} {}", "no JSON");
    expectRefusal(std::string("\0", 1), "no JSON");
    expectRefusal("\x1b[2J", "no JSON");
    expectRefusal("\xff", "no JSON");
}

TEST_F(ResolveInputTest, NamesLinesThatAreNoArchive)
{
    expectRefusal("[]", "an archive is an object");
    expectRefusal("null", "an archive is an object");
    expectRefusal("1e999", "");
    expectRefusal("{}", "nothing in it leads to a file");
    expectRefusal(R"({"ZEFArchivePathKey":null})", "nothing in it leads to a file");
    expectRefusal(R"({"ZEFArchivePathKey":1})", "\"ZEFArchivePathKey\" is not text");
    expectRefusal(R"({"ZEFArchivePathKey":"/tmp\u0000"})", "\"ZEFArchivePathKey\" holds a NUL");
    expectRefusal(R"({"ZEFArchivePathKey":"/tmp/\ud800"})", "no valid Unicode");
    expectRefusal("{\"ZEFArchivePathKey\":\"/tmp/\xff\"}", "no valid Unicode");
    expectRefusal(R"({"ZEFArchivePathURL":"/tmp"})", "\"ZEFArchivePathURL\" is not a file URL");
    expectRefusal(R"({"ZEFArchivePathURL":"file:///%00"})", "\"ZEFArchivePathURL\"");
    expectRefusal(R"({"ZEFArchiveDataKey":[]})", "\"ZEFArchiveDataKey\" is not text");
    expectRefusal(R"({"ZEFArchiveIsAliasKey":1})", "\"ZEFArchiveIsAliasKey\" is neither");
}

TEST_F(ResolveInputTest, NamesLinesWhoseDataAreNotWrittenTheOneWay)
{
    for (const auto* data : { "AA", "AAA", "AA=", "AAAA=", "AA==AA==", "AB==", "AAB=", "A===", "=",
             "====", " AAAA", "AAAA\\n", "AA-_", "AAAAA", "\\u00c4AAA" })
        expectRefusal(R"({"ZEFArchiveDataKey":")" + std::string(data) + "\"}", "is not base64");
}

TEST_F(ResolveInputTest, NamesALineThatIsNestedTooDeep)
{
    expectRefusal(std::string(100'000, '['), "nested deeper than 128 levels");
    expectRefusal(R"({"ZEFArchivePathKey":)" + std::string(200, '[') + std::string(200, ']') + "}",
        "nested deeper than 128 levels");
}

TEST_F(ResolveInputTest, NamesALineThatIsTooLongAndGoesOnBehindIt)
{
    constexpr std::size_t tooLong = 8 * 1024 * 1024;

    expectRefusal(std::string(tooLong, 'x'), "longer than 1048576 bytes");
}

TEST_F(ResolveInputTest, TakesALongLine)
{
    const JSON archive{ { "ZEFArchivePathKey", folder.path("a") },
        { "another key", std::string(1'000'000, 'x') } };

    EXPECT_EQ(resolve(lineOf(archive)).output, folder.path("a") + "\n");
}

TEST_F(ResolveInputTest, FindsNothingByEmptyData)
{
    const auto result = resolve(
        lineOf({ { "ZEFArchivePathKey", folder.path("a") }, { "ZEFArchiveDataKey", "" } }));

    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "zef: " + folder.path("a") + ": the file is gone\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(ResolveInputTest, FallsBackToThePathForDataOfSomebodyElse)
{
    for (const auto* data : { "AAAA", "WkVGQQ==", "WkVGQQH/////AAAAAAAAAAAA" }) {
        const auto result = resolve(
            lineOf({ { "ZEFArchivePathKey", folder.path("a") }, { "ZEFArchiveDataKey", data } }));
        EXPECT_EQ(result.output, folder.path("a") + "\n") << data;
        EXPECT_EQ(result.status, 0);
    }
}

TEST_F(ResolveInputTest, NamesTheLineOfAFileThatHasNoPath)
{
    const auto result = resolve(goodLine() + lineOf({ { "ZEFArchiveDataKey", "AAAA" } }));

    EXPECT_EQ(result.errors, "zef: line 2: the file is gone\n");
}

TEST_F(ResolveInputTest, CountsTheLinesThatItCouldRead)
{
    const auto result = resolve(goodLine() + "x\n" + goodLine() + "y\n");

    const auto errors = lines(result.errors);
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0].rfind("zef: line 2: ", 0), 0u);
    EXPECT_EQ(errors[1].rfind("zef: line 4: ", 0), 0u);
}

TEST_F(ResolveInputTest, ShowsTheNameOfAMissingFileFitForATerminal)
{
    const auto result = resolve(lineOf({ { "ZEFArchivePathKey", "/missing\x1b[2J\n" } }));

    EXPECT_EQ(result.errors, "zef: /missing\\x1b[2J\\n: the file is gone\n");
}

TEST_F(ResolveInputTest, AnswersEachLineAsItComes)
{
    ZefProcess process({ "resolve" });

    process.send(goodLine());
    EXPECT_EQ(process.nextLine(), folder.path("a"));
    process.send(goodLine());
    EXPECT_EQ(process.nextLine(), folder.path("a"));
    process.closeInput();

    EXPECT_EQ(process.status(), 0);
}

TEST_F(ResolveInputTest, EndsWhenItIsInterrupted)
{
    ZefProcess process({ "resolve" });
    process.send(goodLine());
    EXPECT_TRUE(process.nextLine());

    process.signal(SIGINT);

    EXPECT_EQ(process.status(), 130);
    EXPECT_EQ(process.errorText(), "");
}

TEST_F(ResolveInputTest, EndsQuietlyWhenNobodyReadsAnyMore)
{
    ZefProcess process({ "resolve" });
    process.send(goodLine());
    EXPECT_TRUE(process.nextLine());

    process.closeOutput();

    EXPECT_EQ(process.status(), 0);
    EXPECT_EQ(process.errorText(), "");
}

TEST_F(ResolveInputTest, SaysThatItsInputCannotBeRead)
{
    ZefProcess process({ "resolve" }, { .closed = { 0 } });

    EXPECT_EQ(process.status(), 1);
    EXPECT_EQ(process.errorText(), "zef: standard input: Bad file descriptor\n");
}

TEST_F(ResolveInputTest, TakesNoPaths)
{
    EXPECT_EQ(resolve("", { folder.path("a") }).status, 2);
}

} // namespace
