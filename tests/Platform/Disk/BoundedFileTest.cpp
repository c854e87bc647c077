// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/BoundedFile.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using zef::FileError;
using zef::FinalLink;

class BoundedFileTest : public testing::Test {
protected:
    static constexpr std::size_t limit = 65536;

    static zef::Expected<zef::BoundedFile> readAt(const char* path)
    {
        return zef::readBoundedFile(path, limit, FinalLink::refused);
    }

    zef::Expected<zef::BoundedFile> read(std::string_view name)
    {
        return readAt(folder.path(name).c_str());
    }

    TemporaryFolder folder;
};

TEST_F(BoundedFileTest, ReadsTheWholeFile)
{
    using namespace std::string_literals;
    for (const auto& text : { ""s, "text"s, "a\0b"s, std::string(40000, 'x') }) {
        folder.write("file", text);

        const auto file = read("file");

        ASSERT_TRUE(file);
        EXPECT_EQ(file->bytes, text);
        EXPECT_EQ(file->stat.size, text.size());
    }
}

TEST_F(BoundedFileTest, ReadsAFileAtTheLimitAndNoLargerOne)
{
    folder.write("file", std::string(limit, 'x'));
    const auto file = read("file");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->bytes.size(), limit);

    folder.append("file", "x");
    EXPECT_EQ(read("file").error(), FileError::io);
}

TEST_F(BoundedFileTest, ReadsAFileThatDoesNotTellItsSize)
{
    const auto file = readAt("/proc/self/status");

    ASSERT_TRUE(file);
    EXPECT_EQ(file->stat.size, 0u);
    EXPECT_TRUE(file->bytes.starts_with("Name:"));
}

TEST_F(BoundedFileTest, RefusesAFileThatIsLargerThanItTells)
{
    EXPECT_EQ(
        zef::readBoundedFile("/proc/self/status", 16, FinalLink::refused).error(), FileError::io);
}

TEST_F(BoundedFileTest, ReadsNothingButRegularFiles)
{
    folder.makeFolder("folder");
    ASSERT_EQ(::mkfifo(folder.path("fifo").c_str(), 0666), 0);

    EXPECT_EQ(read("folder").error(), FileError::io);
    EXPECT_EQ(read("fifo").error(), FileError::io);
    EXPECT_EQ(readAt("/dev/zero").error(), FileError::io);
    EXPECT_EQ(read("missing").error(), FileError::notFound);
}

TEST_F(BoundedFileTest, FollowsALinkWhereThatIsAskedFor)
{
    folder.write("file", "text");
    folder.symlink("file", "link");
    const auto link = folder.path("link");

    EXPECT_EQ(readAt(link.c_str()).error(), FileError::io);
    const auto file = zef::readBoundedFile(link.c_str(), limit, FinalLink::followed);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->bytes, "text");
}

TEST_F(BoundedFileTest, RespectsPermissions)
{
    folder.write("file");
    folder.chmod("file", 0);
    const WithoutPrivileges plain;

    EXPECT_EQ(read("file").error(), FileError::accessDenied);
}

} // namespace
