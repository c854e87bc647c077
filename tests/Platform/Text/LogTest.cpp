// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include "tests/support/LogRecorder.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

using Lines = std::vector<std::string>;

TEST(LogTest, FormatsOneLine)
{
    LogRecorder recorder;

    zef::log("%s has %d names", "a file", 3);

    EXPECT_EQ(recorder.lines(), Lines{ "a file has 3 names" });
}

TEST(LogTest, EscapesControlCharacters)
{
    LogRecorder recorder;

    zef::log("a%sb", "\n\r\t\x01\x1b[31m\x7f");

    EXPECT_EQ(recorder.lines(), Lines{ "a\\n\\r\\t\\x01\\x1b[31m\\x7fb" });
}

TEST(LogTest, EscapesAZeroByte)
{
    LogRecorder recorder;

    zef::log("a%cb", 0);

    EXPECT_EQ(recorder.lines(), Lines{ "a\\x00b" });
}

TEST(LogTest, EscapesTheControlCharactersBeyondAscii)
{
    LogRecorder recorder;

    zef::log("%s",
        "\xc2\x9b"
        "31m \xc2\x80 \xc2\x9f");

    EXPECT_EQ(recorder.lines(), Lines{ "\\xc2\\x9b31m \\xc2\\x80 \\xc2\\x9f" });
}

TEST(LogTest, LeavesOtherBytesAsTheyAre)
{
    LogRecorder recorder;
    const std::string text = "Grüße \xc2\xa0 \xff\xfe \\n end \xc2";

    zef::log("%s", text.c_str());

    EXPECT_EQ(recorder.lines(), Lines{ text });
}

TEST(LogTest, ShowsLinesOfAnyLength)
{
    for (const std::size_t length : { 510u, 511u, 512u, 513u, 100'000u }) {
        LogRecorder recorder;
        const std::string text(length, 'x');

        zef::log("%s", text.c_str());

        EXPECT_EQ(recorder.lines(), Lines{ text });
    }
}

TEST(LogTest, ShowsTheFormatWhenItCannotBeFilledIn)
{
    LogRecorder recorder;

    // No character of the C locale.
    zef::log("name %ls", L"\u4e2d");

    EXPECT_EQ(recorder.lines(), Lines{ "name %ls" });
}

TEST(LogTest, LeavesErrnoAlone)
{
    zef::LogSink previous = zef::setLogSink([](std::string_view) { errno = EIO; });

    errno = ENOENT;
    zef::log("a line");
    const auto error = errno;
    zef::setLogSink(previous);

    EXPECT_EQ(error, ENOENT);
}

TEST(LogTest, ShowsNilAsText)
{
    EXPECT_STREQ(zef::logText(nullptr), "(null)");
    EXPECT_STREQ(zef::logText("text"), "text");
}

TEST(LogTest, ASinkMayLogAndChangeTheSink)
{
    LogRecorder recorder;
    zef::LogSink outer;
    outer = zef::setLogSink([&](std::string_view) {
        zef::setLogSink(outer);
        zef::log("inner");
    });

    zef::log("first");
    zef::log("second");

    EXPECT_EQ(recorder.lines(), (Lines{ "inner", "second" }));
}

TEST(LogTest, GivesBackTheFormerSink)
{
    LogRecorder outer;
    {
        LogRecorder inner;
        zef::log("inside");
        EXPECT_EQ(inner.lines(), Lines{ "inside" });
    }

    zef::log("outside");

    EXPECT_EQ(outer.lines(), Lines{ "outside" });
}

TEST(LogTest, ManyThreadsMayLogWhileTheSinkChanges)
{
    LogRecorder recorder;
    constexpr int threadCount = 4;
    constexpr int lineCount = 200;
    std::atomic<std::size_t> otherCount{ 0 };
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([] {
            for (int line = 0; line < lineCount; ++line)
                zef::log("line %d", line);
        });
    }
    for (int change = 0; change < 50; ++change) {
        auto former = zef::setLogSink([&](std::string_view) { ++otherCount; });
        zef::setLogSink(former);
    }

    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ(recorder.lines().size() + otherCount, std::size_t(threadCount * lineCount));
}

/// Takes the place of standard error; a read yields what one write wrote.
class StandardErrorPackets {
public:
    StandardErrorPackets()
    {
        if (pipe2(_ends.data(), O_DIRECT | O_CLOEXEC | O_NONBLOCK))
            throw std::runtime_error("no pipe");
        dup2(_ends[1], STDERR_FILENO);
    }

    ~StandardErrorPackets()
    {
        dup2(_saved, STDERR_FILENO);
        for (const auto descriptor : { _saved, _ends[0], _ends[1] })
            close(descriptor);
    }

    StandardErrorPackets(const StandardErrorPackets&) = delete;
    StandardErrorPackets& operator=(const StandardErrorPackets&) = delete;

    /// What the oldest write wrote; empty when there was none.
    std::string next() const
    {
        std::array<char, 4096> buffer{};
        const auto length = read(_ends[0], buffer.data(), buffer.size());
        return std::string(buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    }

private:
    int _saved = dup(STDERR_FILENO);
    std::array<int, 2> _ends{};
};

class DefaultLogSinkTest : public testing::Test {
protected:
    ~DefaultLogSinkTest() override { zef::setLogSink(_former); }

    static std::string programAndProcess()
    {
        return std::string(program_invocation_short_name) + '[' + std::to_string(getpid()) + "]: ";
    }

private:
    zef::LogSink _former = zef::setLogSink(nullptr);
};

TEST_F(DefaultLogSinkTest, WritesTimeProgramAndLineInOneWrite)
{
    constexpr std::size_t dateLength = sizeof "YYYY-MM-DD hh:mm:ss" - 1;
    StandardErrorPackets packets;
    const auto before = std::time(nullptr);

    zef::log("a\nline");

    const auto after = std::time(nullptr);
    const auto packet = packets.next();
    EXPECT_EQ(packets.next(), "");
    ASSERT_GT(packet.size(), dateLength);
    EXPECT_EQ(packet.substr(dateLength), " " + programAndProcess() + "a\\nline\n");
    std::tm local{};
    const auto* end = strptime(packet.c_str(), "%Y-%m-%d %H:%M:%S", &local);
    ASSERT_EQ(end, packet.c_str() + dateLength);
    local.tm_isdst = -1;
    const auto time = std::mktime(&local);
    EXPECT_GE(time, before);
    EXPECT_LE(time, after);
}

TEST_F(DefaultLogSinkTest, ShowsALineThatTheSinkThrewAt)
{
    StandardErrorPackets packets;
    zef::setLogSink([](std::string_view) { throw std::runtime_error("full"); });

    zef::log("a line");

    EXPECT_NE(packets.next().find("a line\n"), std::string::npos);
}

TEST_F(DefaultLogSinkTest, LosesTheLineWhenStandardErrorIsClosed)
{
    const auto saved = dup(STDERR_FILENO);
    close(STDERR_FILENO);

    errno = ENOENT;
    zef::log("a line");
    const auto error = errno;
    dup2(saved, STDERR_FILENO);
    close(saved);

    EXPECT_EQ(error, ENOENT);
}

} // namespace
