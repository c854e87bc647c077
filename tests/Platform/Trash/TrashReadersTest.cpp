// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/Trash.h"

#include "tests/support/TrashFixture.h"
#include "tests/support/TrashVolumesFixture.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

using testing::HasSubstr;

bool areInstalled()
{
    return std::system("command -v trash-list trash-restore >/dev/null") == 0;
}

/// What a shell command writes.
std::string output(const std::string& command)
{
    std::string text;
    std::array<char, 4096> bytes;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(
        ::popen((command + " 2>&1").c_str(), "r"), ::pclose);
    while (pipe && std::fgets(bytes.data(), bytes.size(), pipe.get()))
        text += bytes.data();
    return text;
}

std::string listed()
{
    return output("LC_ALL=C.UTF-8 trash-list");
}

std::string restoreFirstOf(const std::string& folder)
{
    return output("cd / && echo 0 | LC_ALL=C.UTF-8 trash-restore '" + folder + "'");
}

/// Whether another program that knows the trash, trash-cli, finds its way in ours.
class TrashReadersTest : public TrashFixture {
protected:
    void SetUp() override
    {
        if (!areInstalled())
            GTEST_SKIP() << "trash-cli is not installed";
    }

    std::string restoreFirst() const { return restoreFirstOf(folder.path("files")); }
};

/// The same on another volume than the home trash's.
class TrashReadersOnVolumesTest : public TrashVolumesFixture {
protected:
    void SetUp() override
    {
        if (!areInstalled())
            GTEST_SKIP() << "trash-cli is not installed";
    }

    /// A file of the volume is listed with its former path and comes back.
    void expectListedAndRestored(const std::string& name)
    {
        const auto path = folder.path(name);
        folder.write(name, "contents");
        expectMoved({ name });
        ASSERT_FALSE(folder.exists(name));
        EXPECT_THAT(listed(), HasSubstr(' ' + path + '\n'));
        const auto text = restoreFirstOf(std::filesystem::path(path).parent_path());
        EXPECT_TRUE(folder.exists(name)) << text;
    }
};

TEST_F(TrashReadersTest, ListWhereTheFilesWere)
{
    folder.write("files/a b.txt");
    folder.write("files/\u00e4\u20ac");
    trash(Names{ "files/a b.txt", "files/\u00e4\u20ac" });

    const auto list = listed();

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

TEST_F(TrashReadersTest, RestoreALinkAndNotWhatItLeadsTo)
{
    folder.write("files/target");
    folder.symlink("target", "files/link");
    trash(Names{ "files/link" });

    const auto text = restoreFirst();

    EXPECT_EQ(std::filesystem::read_symlink(folder.path("files/link")), "target") << text;
}

TEST_F(TrashReadersTest, KnowBothOfTwoFilesOfOneName)
{
    folder.makeFolder("files/d");
    folder.write("files/a");
    folder.write("files/d/a");
    trash(Names{ "files/a", "files/d/a" });

    const auto list = listed();

    EXPECT_THAT(list, HasSubstr(folder.path("files/a") + '\n'));
    EXPECT_THAT(list, HasSubstr(folder.path("files/d/a") + '\n'));
}

TEST_F(TrashReadersOnVolumesTest, ListAndRestoreFromTheUsersTrash)
{
    run([this](Mounts) {
        folder.makeFolder("volume/d");

        expectListedAndRestored("volume/d/50% \u00e4");
        EXPECT_TRUE(folder.exists(ownTrash));
    });
}

TEST_F(TrashReadersOnVolumesTest, ListAndRestoreFromTheAdministratorsTrash)
{
    run([this](Mounts) {
        makeFolder("volume/.Trash", 01777);

        expectListedAndRestored("volume/a");
        EXPECT_TRUE(folder.exists(sharedTrash));
        EXPECT_FALSE(folder.exists(ownTrash));
    });
}

} // namespace
