// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashRequest.h"

#include "tests/support/DiskCalls.h"
#include "tests/support/TrashFixture.h"
#include "tests/support/WithoutPrivileges.h"

#include <cerrno>
#include <utility>

#include <sys/resource.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Moves that fail half-way, because the files change between the look at them and their move.
class TrashUndoTest : public TrashFixture {
protected:
    TrashUndoTest()
    {
        for (const auto* name : { "a", "b", "c" }) {
            folder.makeFolder(std::string("files/") + name);
            folder.write(file(name), name);
        }
    }

    static std::string file(const std::string& name) { return "files/" + name + "/" + name; }

    bool validate()
    {
        return request.validate(
            std::vector{ entry(file("a")), entry(file("b")), entry(file("c")) });
    }

    void expectAllBack(std::size_t index, int error)
    {
        EXPECT_EQ(refusal.index, index);
        EXPECT_EQ(refusal.error, error) << refusal.reason;
        EXPECT_TRUE(refusal.isUndone);
        EXPECT_EQ(folder.contents(file("a")), "a");
        EXPECT_THAT(trashed(), IsEmpty());
        EXPECT_THAT(infos(), IsEmpty());
    }

    zef::TrashRequest request{ refusal };
};

TEST_F(TrashUndoTest, MovesEverythingWhenNothingChanges)
{
    ASSERT_TRUE(validate());

    EXPECT_TRUE(request.perform());

    EXPECT_THAT(trashed(), ElementsAre("a", "b", "c"));
}

TEST_F(TrashUndoTest, TakesTheOthersBackWhenAFileVanishes)
{
    ASSERT_TRUE(validate());
    folder.remove(file("c"));

    EXPECT_FALSE(request.perform());

    expectAllBack(2, ENOENT);
    EXPECT_EQ(folder.contents(file("b")), "b");
}

TEST_F(TrashUndoTest, TakesTheOthersBackWhenAnotherFileComesToItsName)
{
    ASSERT_TRUE(validate());
    folder.write("files/new", "new");
    folder.rename("files/new", file("b"));

    EXPECT_FALSE(request.perform());

    expectAllBack(1, ESTALE);
    EXPECT_EQ(folder.contents(file("b")), "new");
    EXPECT_EQ(folder.contents(file("c")), "c");
}

TEST_F(TrashUndoTest, GivesBackAFileThatComesToTheNameAtTheLastMoment)
{
    ASSERT_TRUE(validate());
    folder.write("files/new", "new");
    DiskCalls disk;
    bool hasCome = false;
    disk.answer = [&](const std::string& call) {
        if (call == "move b" && !std::exchange(hasCome, true))
            folder.rename("files/new", file("b"));
        return std::nullopt;
    };

    EXPECT_FALSE(request.perform());

    expectAllBack(1, ESTALE);
    EXPECT_EQ(folder.contents(file("b")), "new");
    EXPECT_EQ(folder.contents(file("c")), "c");
}

TEST_F(TrashUndoTest, SaysSoWhenAnotherFileHasTakenTheFormersPlace)
{
    ASSERT_TRUE(validate());
    DiskCalls disk;
    disk.answer = [&](const std::string& call) -> std::optional<int> {
        if (call != "move b")
            return std::nullopt;
        folder.write(file("a"), "another");
        return EIO;
    };

    EXPECT_FALSE(request.perform());

    EXPECT_EQ(refusal.index, 1u);
    EXPECT_FALSE(refusal.isUndone);
    EXPECT_EQ(folder.contents(file("a")), "another");
    EXPECT_EQ(folder.contents("data/Trash/files/a"), "a");
    EXPECT_THAT(infos(), ElementsAre("a.trashinfo"));
    EXPECT_EQ(folder.contents(file("b")), "b");
}

TEST_F(TrashUndoTest, TakesTheOthersBackWhenAFolderIsReplaced)
{
    ASSERT_TRUE(validate());
    folder.rename("files/c", "files/d");
    folder.makeFolder("files/c");
    folder.write(file("c"), "new");

    EXPECT_FALSE(request.perform());

    expectAllBack(2, ESTALE);
    EXPECT_EQ(folder.contents(file("c")), "new");
    EXPECT_EQ(folder.contents("files/d/c"), "c");
}

TEST_F(TrashUndoTest, TakesTheOthersBackWhenAFolderIsLocked)
{
    ASSERT_TRUE(validate());
    folder.chmod("files/c", 0500);
    const WithoutPrivileges user;

    EXPECT_FALSE(request.perform());

    expectAllBack(2, EACCES);
}

TEST_F(TrashUndoTest, MovesNothingWhenARecordCanNotBeWritten)
{
    ASSERT_TRUE(validate());
    folder.chmod("data/Trash/info", 0500);
    const WithoutPrivileges user;

    EXPECT_FALSE(request.perform());

    expectAllBack(0, EACCES);
}

TEST_F(TrashUndoTest, FailsWithoutDescriptorsAndMovesNothing)
{
    ASSERT_TRUE(validate());
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
    const rlimit none{ 0, former.rlim_max };
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);

    const bool isMoved = request.perform();

    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &former), 0);
    EXPECT_FALSE(isMoved);
    expectAllBack(0, EMFILE);
}

} // namespace
