// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash.h"

#include "tests/support/TrashFixture.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

using testing::HasSubstr;

/// Whether another program that knows the trash, trash-cli, finds its way in ours.
class TrashReadersTest : public TrashFixture {
protected:
    void SetUp() override
    {
        if (std::system("command -v trash-list trash-restore >/dev/null") != 0)
            GTEST_SKIP() << "trash-cli is not installed";
    }

    /// What a shell command writes.
    static std::string output(const std::string& command)
    {
        std::string text;
        std::array<char, 4096> bytes;
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
            ::popen((command + " 2>&1").c_str(), "r"), ::pclose);
        while (pipe && std::fgets(bytes.data(), bytes.size(), pipe.get()))
            text += bytes.data();
        return text;
    }

    std::string restoreFirst() const
    {
        return output("cd / && echo 0 | trash-restore '" + folder.path("files") + "'");
    }
};

TEST_F(TrashReadersTest, ListWhereTheFilesWere)
{
    folder.write("files/a b.txt");
    folder.write("files/\u00e4\u20ac");
    trash(Names{ "files/a b.txt", "files/\u00e4\u20ac" });

    const auto list = output("LC_ALL=C.UTF-8 trash-list");

    EXPECT_THAT(list, HasSubstr(folder.path("files/a b.txt")));
    EXPECT_THAT(list, HasSubstr(folder.path("files/\u00e4\u20ac")));
}

TEST_F(TrashReadersTest, RestoreAFile)
{
    folder.write("files/50% a.txt", "contents");
    trash(Names{ "files/50% a.txt" });
    ASSERT_FALSE(folder.exists("files/50% a.txt"));

    const auto text = restoreFirst();

    ASSERT_TRUE(folder.exists("files/50% a.txt")) << text;
    EXPECT_EQ(folder.contents("files/50% a.txt"), "contents");
    EXPECT_TRUE(infos().empty());
}

TEST_F(TrashReadersTest, RestoreAFolderWithItsContents)
{
    folder.makeFolder("files/d");
    folder.write("files/d/f", "deep");
    trash(Names{ "files/d" });

    const auto text = restoreFirst();

    ASSERT_TRUE(folder.exists("files/d/f")) << text;
}

TEST_F(TrashReadersTest, RestoreAFileWhoseNameWasCut)
{
    const auto name = "files/" + std::string(255, 'n');
    folder.write(name);
    trash(Names{ name });

    const auto text = restoreFirst();

    EXPECT_TRUE(folder.exists(name)) << text;
}

} // namespace
