// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/SmallFileCache.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <unistd.h>

namespace {

class SmallFileCacheTest : public testing::Test {
protected:
    using Meaning = std::shared_ptr<const std::string>;

    zef::Stat stat(std::string_view name)
    {
        zef::Stat result;
        EXPECT_EQ(zef::FileSystem::system().statLink(folder.path(name).c_str(), result), 0);
        return result;
    }

    Meaning read(std::string_view name) { return read(name, stat(name)); }

    Meaning read(std::string_view name, const zef::Stat& seen)
    {
        return cache.read(folder.path(name).c_str(), seen, [this](const std::string& bytes) {
            ++parseCount;
            return "<" + bytes + ">";
        });
    }

    TemporaryFolder folder;
    // Years away from the files' stamps.
    SteppedClock clock;
    zef::SmallFileCache<std::string, 2> cache{ clock };
    int parseCount = 0;
};

TEST_F(SmallFileCacheTest, ReadsAFileOnce)
{
    folder.write("file", "text");

    for (int round = 0; round < 3; ++round) {
        const auto meaning = read("file");
        ASSERT_TRUE(meaning);
        EXPECT_EQ(*meaning, "<text>");
    }
    EXPECT_EQ(parseCount, 1);
}

TEST_F(SmallFileCacheTest, KnowsAFileByAnyOfItsNames)
{
    folder.write("file", "text");
    folder.link("file", "other");
    read("file");

    EXPECT_EQ(read("other"), read("file"));
}

TEST_F(SmallFileCacheTest, ReadsAFileAgainThatChanged)
{
    folder.write("file", "text");
    const auto before = read("file");

    folder.write("file", "longer text");

    EXPECT_EQ(*read("file"), "<longer text>");
    EXPECT_EQ(*before, "<text>");
}

TEST_F(SmallFileCacheTest, ReadsAFileAgainWhoseStampsAloneChanged)
{
    folder.write("file", "text");
    read("file");

    folder.setModificationTime("file", 1'000'000'001);

    EXPECT_EQ(*read("file"), "<text>");
    EXPECT_EQ(parseCount, 2);
}

TEST_F(SmallFileCacheTest, DoesNotRememberAFileThatWasJustWritten)
{
    folder.write("file", "text");
    const auto written = stat("file").statusChangeTime;
    clock.setWallClock(zef::Date::withSecondsSince1970(zef::secondsOfTimeStamp(written)));

    read("file");
    read("file");
    EXPECT_EQ(parseCount, 2);

    clock.advance(0.1);
    read("file");
    read("file");
    EXPECT_EQ(parseCount, 3);
}

TEST_F(SmallFileCacheTest, RemembersTheLastFilesAlone)
{
    for (const auto* name : { "one", "two", "three" })
        EXPECT_TRUE(read(folder.write(name, name).lastPathComponent()));
    EXPECT_EQ(parseCount, 3);

    read("three");
    read("two");
    EXPECT_EQ(parseCount, 3);
    read("one");
    EXPECT_EQ(parseCount, 4);
}

TEST_F(SmallFileCacheTest, ForgetsWhenItIsTold)
{
    folder.write("file", "text");
    read("file");

    cache.forget();

    EXPECT_EQ(*read("file"), "<text>");
    EXPECT_EQ(parseCount, 2);
}

TEST_F(SmallFileCacheTest, ReadsNothingOfAFileThatAnotherOneReplaced)
{
    folder.write("file", "text");
    folder.write("other", "other");
    const auto seen = stat("file");
    folder.rename("other", "file");

    EXPECT_FALSE(read("file", seen));
    EXPECT_EQ(parseCount, 0);
}

TEST_F(SmallFileCacheTest, ReadsNoFileThatIsNotSmall)
{
    folder.write("file");
    ASSERT_EQ(::truncate(folder.path("file").c_str(), 1 << 30), 0);

    EXPECT_FALSE(read("file"));
    folder.makeFolder("folder");
    EXPECT_FALSE(read("folder"));
    EXPECT_EQ(parseCount, 0);
}

} // namespace
