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
    std::string type;
    bool isInvisible = false;
};

TEST_F(FakeFileInformationTest, StandsInForTheSharedOneWhileItLives)
{
    EXPECT_EQ(&zef::FileInformation::shared(), &information);
}

TEST_F(FakeFileInformationTest, AnswersAsUsualUntilTheTestSaysOtherwise)
{
    EXPECT_EQ(information.copyContentType({ ref, url }, type), Result::none);
    EXPECT_EQ(type, "public.data");
    EXPECT_EQ(information.copyContentType({ folderRef, folderURL }, type), Result::none);
    EXPECT_EQ(type, "public.folder");
    EXPECT_EQ(information.copyContentType({ ref, url, true }, type), Result::none);
    EXPECT_EQ(type, "public.symlink");
    isInvisible = true;
    EXPECT_EQ(information.copyInvisibility({ ref, url }, isInvisible), Result::none);
    EXPECT_FALSE(isInvisible);
    EXPECT_EQ(information.copyDisplayName({ ref, url }), "file");
    EXPECT_EQ(information.copyDisplayNameAtPath("/folder/"), "folder");
}

TEST_F(FakeFileInformationTest, TellsWhatTheTestSaysWhateverTheMarkOfTheURL)
{
    information.setContentType(url, "test.type");
    information.setInvisible(url, true);
    information.setDisplayName(url, "Name");
    const auto marked = url.withKind(zef::URLKind::folder);

    EXPECT_EQ(information.copyContentType({ ref, marked }, type), Result::none);
    EXPECT_EQ(type, "test.type");
    EXPECT_EQ(information.copyInvisibilityAtURL(marked, isInvisible), Result::none);
    EXPECT_TRUE(isInvisible);
    EXPECT_EQ(information.copyDisplayName({ ref, marked }), "Name");
    EXPECT_EQ(information.copyDisplayNameAtPath("/folder/file"), "Name");
}

TEST_F(FakeFileInformationTest, LeadsWhereTheTestSays)
{
    information.setAliasTarget(url, folderRef, folderURL);
    auto targetRef = ref;
    auto target = url;
    bool isFolder = false;
    bool wasAliased = false;

    EXPECT_EQ(information.resolveAliasFile(targetRef, target, isFolder, wasAliased),
        zef::FileError::none);

    EXPECT_TRUE(targetRef.hasNumbersOf(folderRef));
    EXPECT_EQ(target, folderURL);
    EXPECT_TRUE(isFolder);
    EXPECT_TRUE(wasAliased);
    EXPECT_EQ(information.resolveAliasFile(targetRef, target, isFolder, wasAliased),
        zef::FileError::none);
    EXPECT_EQ(target, folderURL);
    EXPECT_FALSE(wasAliased);
}

TEST_F(FakeFileInformationTest, KnowsNoTargetOfAURLUntilTheTestSaysOne)
{
    zef::FSRef targetRef;
    zef::FileURL target;
    EXPECT_EQ(information.copyTargetOfURL(url, targetRef, target), Result::notFound);

    information.setTarget(url, folderRef, folderURL);

    EXPECT_EQ(information.copyTargetOfURL(url, targetRef, target), Result::none);
    EXPECT_TRUE(targetRef.hasNumbersOf(folderRef));
    EXPECT_EQ(target, folderURL);
}

TEST_F(FakeFileInformationTest, FailsAndCountsAsTheTestSays)
{
    information.setError(Question::contentType, url, zef::FileError::accessDenied);
    information.setError(Question::displayName, url, zef::FileError::notFound);
    type = "before";

    EXPECT_EQ(information.copyContentType({ ref, url }, type), zef::FileError::accessDenied);
    EXPECT_EQ(type, "before");
    EXPECT_EQ(information.copyDisplayName({ ref, url }), "");
    EXPECT_EQ(information.copyDisplayNameAtPath("/folder/file"), "file");
    information.setError(Question::contentType, url, zef::FileError::none);
    EXPECT_EQ(information.copyContentType({ ref, url }, type), Result::none);

    EXPECT_EQ(information.count(Question::contentType), 2u);
    EXPECT_EQ(information.count(Question::displayName), 1u);
    EXPECT_EQ(information.count(Question::invisibility), 0u);
    EXPECT_EQ(information.count(), 4u);
}

} // namespace
