// SPDX-License-Identifier: MIT
#include "tests/support/DiskCalls.h"
#include "tests/support/TrashFixture.h"

#include <cerrno>

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using zef::TrashOutcome;

/// What comes to the disk first, so that after a power cut nothing lies in the trash that nobody
/// can restore; and what becomes of a request when the disk fails.
class TrashOrderTest : public TrashFixture {
protected:
    TrashOrderTest()
    {
        for (const auto* name : { "a", "b", "c", "d", "e" }) {
            all.push_back(std::string("files/") + name);
            folder.write(all.back(), name);
        }
    }

    void failAt(const std::string& call, int error)
    {
        disk.answer = [=](const std::string& made) {
            return made == call ? std::optional(error) : std::nullopt;
        };
    }

    /// The request failed and left nothing in the trash.
    void expectFailure(TrashOutcome outcome, std::size_t index, int error)
    {
        EXPECT_EQ(outcome, TrashOutcome::failed);
        EXPECT_EQ(refusal.index, index);
        EXPECT_EQ(refusal.error, error) << refusal.reason;
        EXPECT_TRUE(refusal.isUndone);
        EXPECT_THAT(namesIn("files"), ElementsAre("a", "b", "c", "d", "e"));
        EXPECT_THAT(trashed(), IsEmpty());
        EXPECT_THAT(infos(), IsEmpty());
    }

    Names all;
    DiskCalls disk;
};

TEST_F(TrashOrderTest, ARecordIsOnTheDiskBeforeItsFileMoves)
{
    trash(Names{ "files/a" });

    EXPECT_THAT(disk.calls, ElementsAre("fsync a.trashinfo", "move a"));
}

TEST_F(TrashOrderTest, ARecordIsWholeWhenItComesToTheDisk)
{
    std::string record;
    disk.answer = [&](const std::string& call) {
        if (call == "fsync a.trashinfo")
            record = info("a");
        return std::nullopt;
    };

    trash(Names{ "files/a" });

    EXPECT_EQ(record, info("a"));
    EXPECT_THAT(record, HasSubstr("\nDeletionDate="));
    EXPECT_THAT(record, EndsWith("\n"));
}

TEST_F(TrashOrderTest, AllRecordsAreOnTheDiskBeforeTheFirstFileMoves)
{
    trash(Names{ "files/a", "files/b" });

    EXPECT_THAT(
        disk.calls, ElementsAre("fsync a.trashinfo", "fsync b.trashinfo", "move a", "move b"));
}

TEST_F(TrashOrderTest, ManyRecordsComeToTheDiskAtOnce)
{
    std::size_t recordsThen = 0;
    disk.answer = [&](const std::string& call) {
        if (call == "syncfs info")
            recordsThen = infos().size();
        return std::nullopt;
    };

    trash(all);

    EXPECT_EQ(recordsThen, all.size());
    EXPECT_THAT(
        disk.calls, ElementsAre("syncfs info", "move a", "move b", "move c", "move d", "move e"));
}

TEST_F(TrashOrderTest, NoFileOfALargeRequestMovesBeforeItsRecordIsOnTheDisk)
{
    constexpr int count = 1100;
    Names names;
    folder.makeFolder("many");
    for (int number = 0; number < count; ++number) {
        names.push_back("many/" + std::to_string(number));
        folder.write(names.back());
    }
    std::size_t recordsOnDisk = 0;
    std::size_t moved = 0;
    bool wasInOrder = true;
    disk.answer = [&](const std::string& call) -> std::optional<int> {
        if (call == "syncfs info") {
            recordsOnDisk = infos().size();
            return 0;
        }
        wasInOrder &= ++moved <= recordsOnDisk;
        return std::nullopt;
    };

    EXPECT_EQ(trash(names), TrashOutcome::moved);

    EXPECT_TRUE(wasInOrder);
    EXPECT_EQ(moved, std::size_t{ count });
    EXPECT_EQ(recordsOnDisk, std::size_t{ count });
}

TEST_F(TrashOrderTest, TheRecordOfANewNameIsOnTheDiskBeforeTheFileMovesThere)
{
    folder.makeFolder("data");
    folder.makeFolder("data/Trash");
    folder.makeFolder("data/Trash/files");
    folder.write("data/Trash/files/a", "without a record");

    EXPECT_EQ(trash(Names{ "files/a" }), TrashOutcome::moved);

    EXPECT_THAT(
        disk.calls, ElementsAre("fsync a.trashinfo", "move a", "fsync a.2.trashinfo", "move a"));
}

TEST_F(TrashOrderTest, NothingMovesWhenARecordDoesNotComeToTheDisk)
{
    failAt("fsync b.trashinfo", EIO);

    expectFailure(trash(Names{ "files/a", "files/b" }), 1, EIO);

    EXPECT_THAT(disk.calls, ElementsAre("fsync a.trashinfo", "fsync b.trashinfo"));
}

TEST_F(TrashOrderTest, NothingMovesWhenManyRecordsDoNotComeToTheDisk)
{
    failAt("syncfs info", ENOSPC);

    expectFailure(trash(all), 4, ENOSPC);

    EXPECT_THAT(disk.calls, ElementsAre("syncfs info"));
}

TEST_F(TrashOrderTest, FilesComeBackWhenALaterOneDoesNotMove)
{
    failAt("move c", EIO);

    expectFailure(trash(Names{ "files/a", "files/b", "files/c", "files/d" }), 2, EIO);
}

TEST_F(TrashOrderTest, AFileThatComesBackKeepsItsRecordUntilThen)
{
    int moves = 0;
    Names recordsThen;
    disk.answer = [&](const std::string& call) -> std::optional<int> {
        if (call == "move b")
            return EIO;
        if (call == "move a" && ++moves == 2)
            recordsThen = infos();
        return std::nullopt;
    };

    expectFailure(trash(Names{ "files/a", "files/b" }), 1, EIO);

    EXPECT_EQ(moves, 2);
    EXPECT_THAT(recordsThen, testing::Contains("a.trashinfo"));
}

TEST_F(TrashOrderTest, AFileThatCanNotComeBackStaysInTheTrashWithItsRecord)
{
    int moves = 0;
    disk.answer = [&](const std::string& call) -> std::optional<int> {
        const bool isBack = call == "move a" && ++moves == 2;
        return call == "move b" || isBack ? std::optional(EIO) : std::nullopt;
    };

    EXPECT_EQ(trash(Names{ "files/a", "files/b" }), TrashOutcome::failed);

    EXPECT_EQ(refusal.index, 1u);
    EXPECT_FALSE(refusal.isUndone);
    EXPECT_THAT(trashed(), ElementsAre("a"));
    EXPECT_THAT(infos(), ElementsAre("a.trashinfo"));
    EXPECT_TRUE(folder.exists("files/b"));
}

/// File systems that can't refuse a name that is taken in one step, such as those of FUSE, say so
/// with EINVAL; systems without the call with ENOSYS.
class TrashOrderWithoutFreeNamesTest : public TrashOrderTest,
                                       public testing::WithParamInterface<int> {
protected:
    TrashOrderWithoutFreeNamesTest()
    {
        disk.answer = [](const std::string& call) {
            return call.starts_with("move ") ? std::optional(GetParam()) : std::nullopt;
        };
    }
};

TEST_P(TrashOrderWithoutFreeNamesTest, FilesMove)
{
    EXPECT_EQ(trash(Names{ "files/a", "files/b" }), TrashOutcome::moved);

    EXPECT_THAT(trashed(), ElementsAre("a", "b"));
    EXPECT_THAT(infos(), SizeIs(2));
}

TEST_P(TrashOrderWithoutFreeNamesTest, WhatLiesInTheTrashStays)
{
    folder.makeFolder("data");
    folder.makeFolder("data/Trash");
    folder.makeFolder("data/Trash/files");
    folder.write("data/Trash/files/a", "without a record");

    EXPECT_EQ(trash(Names{ "files/a" }), TrashOutcome::moved);

    EXPECT_EQ(folder.contents("data/Trash/files/a"), "without a record");
    EXPECT_EQ(folder.contents("data/Trash/files/a.2"), "a");
    EXPECT_THAT(infos(), ElementsAre("a.2.trashinfo"));
}

INSTANTIATE_TEST_SUITE_P(Errors, TrashOrderWithoutFreeNamesTest, testing::Values(EINVAL, ENOSYS));

} // namespace
