// SPDX-License-Identifier: MIT
#include "tests/support/Privileges.h"
#include "tests/support/TrashFixture.h"
#include "tests/support/WithoutPrivileges.h"

#include <cerrno>

#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zef::TrashOutcome;

/// Requests that a look at the files shows to be impossible. Each has a good file before the bad
/// one, which has to stay.
class TrashRefusalTest : public TrashFixture {
protected:
    TrashRefusalTest() { folder.write("files/good"); }

    TrashOutcome trashWith(const std::string& name) { return trash(Names{ "files/good", name }); }

    TrashOutcome trashWith(const zef::TrashEntry& bad)
    {
        return trash({ entry("files/good"), bad });
    }

    void expectRefusal(TrashOutcome outcome, int error)
    {
        EXPECT_EQ(outcome, TrashOutcome::refused);
        EXPECT_EQ(refusal.index, 1u);
        EXPECT_EQ(refusal.error, error) << refusal.reason;
        EXPECT_FALSE(refusal.reason.empty());
        EXPECT_TRUE(refusal.isUndone);
        EXPECT_TRUE(folder.exists("files/good"));
        EXPECT_THAT(trashed(), IsEmpty());
        EXPECT_THAT(infos(), IsEmpty());
    }
};

TEST_F(TrashRefusalTest, AnEmptyReference)
{
    expectRefusal(trashWith(zef::TrashEntry()), ENOENT);
}

TEST_F(TrashRefusalTest, AFileThatIsGone)
{
    folder.write("files/bad");
    const auto bad = entry("files/bad");
    folder.remove("files/bad");

    expectRefusal(trashWith(bad), ENOENT);
}

TEST_F(TrashRefusalTest, AnotherFileInTheFormersPlace)
{
    folder.write("files/bad");
    const auto bad = entry("files/bad");
    folder.write("files/other");
    folder.remove("files/bad");
    folder.rename("files/other", "files/bad");

    expectRefusal(trashWith(bad), ENOENT);
    EXPECT_TRUE(folder.exists("files/bad"));
}

TEST_F(TrashRefusalTest, TheRoot)
{
    expectRefusal(trashWith(entryAt("/")), EBUSY);
}

TEST_F(TrashRefusalTest, AMountPoint)
{
    const auto outcome = trashWith(entryAt("/proc"));

    expectRefusal(outcome, EBUSY);
    EXPECT_EQ(refusal.reason, "a volume is mounted there");
}

TEST_F(TrashRefusalTest, TheTrashItself)
{
    folder.write("files/first");
    trash(Names{ "files/first" });
    folder.remove("data/Trash/files/first");
    folder.remove("data/Trash/info/first.trashinfo");

    expectRefusal(trashWith("data/Trash"), EBUSY);
}

TEST_F(TrashRefusalTest, AFolderAboveTheTrash)
{
    folder.makeFolder("data");
    folder.makeFolder("data/Trash");

    expectRefusal(trashWith("data"), EBUSY);
}

TEST_F(TrashRefusalTest, AFolderThatTheTrashWouldBeIn)
{
    folder.makeFolder("data");

    expectRefusal(trashWith("data"), EBUSY);
}

TEST_F(TrashRefusalTest, WhatIsInTheTrash)
{
    folder.write("files/old");
    trash(Names{ "files/old" });

    EXPECT_EQ(trashWith("data/Trash/files/old"), TrashOutcome::refused);

    EXPECT_EQ(refusal.index, 1u);
    EXPECT_EQ(refusal.reason, "it is in the trash already");
    EXPECT_THAT(trashed(), ElementsAre("old"));
    EXPECT_THAT(infos(), ElementsAre("old.trashinfo"));
    EXPECT_TRUE(folder.exists("files/good"));
}

TEST_F(TrashRefusalTest, AFileInAFolderThatMayNotBeWritten)
{
    folder.makeFolder("locked");
    folder.write("locked/bad");
    folder.chmod("locked", 0500);
    const WithoutPrivileges user;

    expectRefusal(trashWith("locked/bad"), EACCES);
}

TEST_F(TrashRefusalTest, AFolderThatMayNotBeWritten)
{
    folder.makeFolder("files/bad");
    folder.chmod("files/bad", 0500);
    const WithoutPrivileges user;

    expectRefusal(trashWith("files/bad"), EACCES);
}

TEST_F(TrashRefusalTest, AFileOfAnotherUserInAStickyFolder)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make files of another user";
    folder.makeFolder("shared");
    folder.write("shared/bad");
    ASSERT_EQ(::chown(folder.path("shared/bad").c_str(), 65534, 65534), 0);
    ASSERT_EQ(::chown(folder.path("shared").c_str(), 65534, 65534), 0);
    folder.chmod("shared", 01777);
    const WithoutPrivileges user;

    expectRefusal(trashWith("shared/bad"), EPERM);
}

TEST_F(TrashRefusalTest, ATrashOfAnotherUser)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make a trash of another user";
    folder.makeFolder("data");
    folder.makeFolder("data/Trash");
    ASSERT_EQ(::chown(folder.path("data/Trash").c_str(), 65534, 65534), 0);

    EXPECT_EQ(trash(Names{ "files/good" }), TrashOutcome::refused);

    EXPECT_EQ(refusal.error, EPERM);
    EXPECT_TRUE(folder.exists("files/good"));
}

TEST_F(TrashRefusalTest, ATrashWhoseFoldersAreLinks)
{
    folder.makeFolder("data");
    folder.makeFolder("data/Trash");
    folder.makeFolder("elsewhere");
    folder.symlink(folder.path("elsewhere"), "data/Trash/files");

    EXPECT_EQ(trash(Names{ "files/good" }), TrashOutcome::refused);

    EXPECT_EQ(refusal.error, ENOTDIR);
    EXPECT_THAT(namesIn("elsewhere"), IsEmpty());
}

TEST_F(TrashRefusalTest, ATrashThatMayNotBeWritten)
{
    folder.makeFolder("data");
    folder.makeFolder("data/Trash");
    folder.makeFolder("data/Trash/files");
    folder.makeFolder("data/Trash/info");
    folder.chmod("data/Trash/info", 0500);
    const WithoutPrivileges user;

    EXPECT_EQ(trash(Names{ "files/good" }), TrashOutcome::refused);

    EXPECT_EQ(refusal.error, EACCES);
    EXPECT_TRUE(folder.exists("files/good"));
}

TEST_F(TrashRefusalTest, AHomeThatCanNotBeMade)
{
    folder.makeFolder("locked");
    folder.chmod("locked", 0500);
    dataHome.set(folder.path("locked/data"));
    const WithoutPrivileges user;

    EXPECT_EQ(trash(Names{ "files/good" }), TrashOutcome::refused);

    EXPECT_NE(refusal.error, 0);
    EXPECT_TRUE(folder.exists("files/good"));
}

} // namespace
