// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileInformation.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include <gtest/gtest.h>

namespace {

using Question = FakeFileInformation::Question;
using Result = zef::FileError;

class FakeFileInformationTest : public testing::Test {
protected:
    static zef::FSRef makeRef(std::uint64_t inode, std::uint32_t mode)
    {
        zef::Stat stat;
        stat.inode = inode;
        stat.mode = mode;
        return zef::FSRef(stat);
    }

    FakeFileInformation information;
    zef::FSRef ref = makeRef(5, 0100644);
    zef::FSRef folderRef = makeRef(6, 0040755);
    zef::FileURL url = zef::FileURL::fromPath("/folder/file", zef::URLKind::file);
    zef::FileURL folderURL = zef::FileURL::fromPath("/folder", zef::URLKind::folder);
};

TEST_F(FakeFileInformationTest, StandsInForTheSharedOneWhileItLives)
{
    EXPECT_EQ(&zef::FileInformation::shared(), &information);
}

TEST_F(FakeFileInformationTest, AnswersAsUsualUntilTheTestSaysOtherwise)
{
    EXPECT_EQ(*information.copyContentType({ ref, url }), "public.data");
    EXPECT_EQ(*information.copyContentType({ folderRef, folderURL }), "public.folder");
    EXPECT_EQ(*information.copyContentType({ ref, url, true }), "public.symlink");
    EXPECT_FALSE(*information.copyInvisibility({ ref, url }));
    EXPECT_EQ(information.copyDisplayName({ ref, url }), "file");
    EXPECT_EQ(information.copyDisplayNameAtPath("/folder/"), "folder");
}

TEST_F(FakeFileInformationTest, TellsWhatTheTestSaysWhateverTheMarkOfTheURL)
{
    information.setContentType(url, "test.type");
    information.setInvisible(url, true);
    information.setDisplayName(url, "Name");
    const auto marked = url.withKind(zef::URLKind::folder);

    EXPECT_EQ(*information.copyContentType({ ref, marked }), "test.type");
    EXPECT_TRUE(*information.copyInvisibilityAtURL(marked));
    EXPECT_EQ(information.copyDisplayName({ ref, marked }), "Name");
    EXPECT_EQ(information.copyDisplayNameAtPath("/folder/file"), "Name");
}

TEST_F(FakeFileInformationTest, LeadsWhereTheTestSays)
{
    information.setAliasTarget(url, folderRef, folderURL);

    const auto target = information.resolveAliasFile(ref, url);

    ASSERT_TRUE(target);
    EXPECT_TRUE(target->ref.hasNumbersOf(folderRef));
    EXPECT_EQ(target->url, folderURL);
    EXPECT_TRUE(target->isFolder);
    EXPECT_TRUE(target->wasAliased);
    const auto end = information.resolveAliasFile(target->ref, target->url);
    ASSERT_TRUE(end);
    EXPECT_EQ(end->url, folderURL);
    EXPECT_FALSE(end->wasAliased);
}

TEST_F(FakeFileInformationTest, KnowsNoTargetOfAURLUntilTheTestSaysOne)
{
    EXPECT_EQ(information.copyTargetOfURL(url).error(), Result::notFound);

    information.setTarget(url, folderRef, folderURL);

    const auto target = information.copyTargetOfURL(url);
    ASSERT_TRUE(target);
    EXPECT_TRUE(target->ref.hasNumbersOf(folderRef));
    EXPECT_EQ(target->url, folderURL);
}

TEST_F(FakeFileInformationTest, FailsAndCountsAsTheTestSays)
{
    information.setError(Question::contentType, url, zef::FileError::accessDenied);
    information.setError(Question::displayName, url, zef::FileError::notFound);

    EXPECT_EQ(information.copyContentType({ ref, url }).error(), Result::accessDenied);
    EXPECT_EQ(information.copyDisplayName({ ref, url }), "");
    EXPECT_EQ(information.copyDisplayNameAtPath("/folder/file"), "file");
    information.setError(Question::contentType, url, zef::FileError::none);
    EXPECT_TRUE(information.copyContentType({ ref, url }));

    EXPECT_EQ(information.count(Question::contentType), 2u);
    EXPECT_EQ(information.count(Question::displayName), 1u);
    EXPECT_EQ(information.count(Question::invisibility), 0u);
    EXPECT_EQ(information.count(), 4u);
}

} // namespace
