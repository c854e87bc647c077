// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/SmallFile.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace {

class SmallFileTest : public testing::Test {
protected:
    int read(std::string_view name)
    {
        return zef::readSmallFile(folder.path(name).c_str(), stat, bytes);
    }

    TemporaryFolder folder;
    zef::Stat stat;
    std::string bytes;
};

TEST_F(SmallFileTest, ReadsTheWholeFile)
{
    using namespace std::string_literals;
    for (const auto& text : { ""s, "text"s, "a\0b"s, std::string(40000, 'x') }) {
        folder.write("file", text);

        EXPECT_EQ(read("file"), 0);
        EXPECT_EQ(bytes, text);
        EXPECT_EQ(stat.size, text.size());
        EXPECT_TRUE(zef::isSmallFile(stat));
    }
}

TEST_F(SmallFileTest, ReadsAFileOf64KiBAndNoLargerOne)
{
    folder.write("file", std::string(65536, 'x'));
    EXPECT_EQ(read("file"), 0);
    EXPECT_EQ(bytes.size(), 65536u);

    folder.append("file", "x");
    EXPECT_EQ(read("file"), EFBIG);
    EXPECT_FALSE(zef::isSmallFile(stat));
}

TEST_F(SmallFileTest, ReadsAFileThatDoesNotTellItsSize)
{
    ASSERT_EQ(zef::readSmallFile("/proc/self/status", stat, bytes), 0);

    EXPECT_EQ(stat.size, 0u);
    EXPECT_TRUE(bytes.starts_with("Name:"));
}

TEST_F(SmallFileTest, RefusesAFileThatGrowsBeyondWhatItTells)
{
    const int result = zef::readSmallFile("/proc/kallsyms", stat, bytes);

    EXPECT_TRUE(result == EFBIG || result == ENOENT || result == EACCES);
}

TEST_F(SmallFileTest, ReadsNothingButRegularFiles)
{
    folder.makeFolder("folder");
    folder.write("file");
    folder.symlink("file", "link");
    ASSERT_EQ(::mkfifo(folder.path("fifo").c_str(), 0666), 0);

    EXPECT_EQ(read("folder"), EINVAL);
    EXPECT_EQ(read("link"), ELOOP);
    EXPECT_EQ(read("fifo"), EINVAL);
    EXPECT_EQ(read("missing"), ENOENT);
    EXPECT_EQ(zef::readSmallFile("/dev/zero", stat, bytes), EINVAL);
}

TEST_F(SmallFileTest, RespectsPermissions)
{
    folder.write("file");
    folder.chmod("file", 0);
    const WithoutPrivileges plain;

    EXPECT_EQ(read("file"), EACCES);
}

} // namespace
