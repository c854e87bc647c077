// SPDX-License-Identifier: MIT
#include "tests/support/BasicInfoFixture.h"

#include <gtest/gtest.h>

namespace {

class ZEFBasicInfoFileItemTargetTest : public BasicInfoFixture {
protected:
    ZEFBasicInfoFileItemTargetTest()
    {
        files.addFile("/file");
        files.addFolder("/folder");
    }

    zef::Ref<ZEFBasicInfoFileItem> danglingLink()
    {
        files.addLink("/dangling", "/nowhere");
        information.setError(Question::aliasFile, url("/dangling"), zef::FileError::notFound);
        return info("/dangling");
    }
};

TEST_F(ZEFBasicInfoFileItemTargetTest, IsItsOwnTargetWhenItIsARealFile)
{
    const auto file = info("/file");

    ASSERT_TRUE(file->resolvedFSRef());
    EXPECT_TRUE(file->resolvedFSRef()->hasNumbersOf(stat("/file")));
    EXPECT_EQ(file->resolvedURL(), file->url());
    EXPECT_EQ(*file->resolvedPath(), "/file");
    EXPECT_EQ(file->resolvedFile(), file);
}

TEST_F(ZEFBasicInfoFileItemTargetTest, DoesNotOwnItself)
{
    auto file = info("/file");
    file->resolvedFile();

    EXPECT_EQ(file->retainCount(), 1U);
}

TEST_F(ZEFBasicInfoFileItemTargetTest, LeadsWhereItsAliasFileLeads)
{
    const auto alias = aliasTo("/alias", "/folder");
    const auto folder = infoAt(folderURL("/folder"));

    ASSERT_TRUE(alias->resolvedFSRef());
    EXPECT_TRUE(alias->resolvedFSRef()->hasNumbersOf(stat("/folder")));
    EXPECT_EQ(alias->resolvedURL(), folder->url());
    EXPECT_EQ(*alias->resolvedPath(), "/folder");
    EXPECT_EQ(alias->resolvedFile(), folder);
    EXPECT_TRUE(alias->isAlias());
}

TEST_F(ZEFBasicInfoFileItemTargetTest, LeadsWhereItsSymbolicLinkLeads)
{
    const auto link = linkTo("/link", "/folder");

    ASSERT_TRUE(link->resolvedFSRef());
    EXPECT_TRUE(link->resolvedFSRef()->hasNumbersOf(stat("/folder")));
    EXPECT_EQ(link->resolvedURL(), folderURL("/folder"));
    EXPECT_FALSE(link->isAlias());
}

TEST_F(ZEFBasicInfoFileItemTargetTest, BecomesAnAliasWhenItsLinkLeadsToAnAliasFile)
{
    aliasTo("/alias", "/folder");
    const auto link = linkTo("/link", "/alias");

    ASSERT_TRUE(link->resolvedFSRef());
    EXPECT_TRUE(link->resolvedFSRef()->hasNumbersOf(stat("/folder")));
    EXPECT_TRUE(link->isAlias());
}

TEST_F(ZEFBasicInfoFileItemTargetTest, OwnsTheItemOfItsTarget)
{
    const auto alias = aliasTo("/alias", "/file");

    const auto target = alias->resolvedFile();

    ASSERT_TRUE(target);
    EXPECT_EQ(target->retainCount(), 2U);
    EXPECT_EQ(target->objectClass().name, ZEFBasicInfoFileItem::classObject.name);
    EXPECT_EQ(info("/file"), target);
}

TEST_F(ZEFBasicInfoFileItemTargetTest, DoesNotOwnItselfWhenItsAliasLeadsToIt)
{
    auto alias = aliasTo("/alias", "/file");
    information.setAliasTarget(url("/alias"), ref("/alias"), url("/alias"));

    EXPECT_EQ(alias->resolvedFile(), alias);
    EXPECT_EQ(alias->retainCount(), 1U);
}

TEST_F(ZEFBasicInfoFileItemTargetTest, HandsOutTheReferenceInTheCallThatFindsItUnusable)
{
    const auto alias = aliasTo("/alias", "/file");
    information.setError(Question::aliasFile, url("/alias"), zef::FileError::notFound);

    EXPECT_TRUE(alias->resolvedFSRef());
    EXPECT_FALSE(alias->resolvedFSRef());
    EXPECT_EQ(information.count(Question::aliasFile), 1U);
}

TEST_F(ZEFBasicInfoFileItemTargetTest, DoesNotResolveAFileWithoutAReference)
{
    const auto file = withoutReference(url("/file"));

    EXPECT_TRUE(file->resolvedFSRef());
    EXPECT_FALSE(file->resolvedFSRef());
    EXPECT_EQ(information.count(Question::aliasFile), 0U);
}

TEST_F(ZEFBasicInfoFileItemTargetTest, AsksForTheAliasAlsoWhenALinkLeadsNowhere)
{
    const auto link = danglingLink();

    EXPECT_TRUE(link->resolvedFSRef());
    EXPECT_FALSE(link->resolvedFSRef());
    EXPECT_EQ(information.count(Question::targetOfURL), 1U);
    EXPECT_EQ(information.count(Question::aliasFile), 1U);
}

TEST_F(ZEFBasicInfoFileItemTargetTest, LeadsToItselfWhenItsLinkLeadsNowhere)
{
    const auto link = danglingLink();

    EXPECT_EQ(link->resolvedURL(), link->url());
    EXPECT_EQ(*link->resolvedPath(), "/dangling");
    EXPECT_EQ(link->resolvedFile(), link);
    EXPECT_EQ(link->retainCount(), 1U);
}

TEST_F(ZEFBasicInfoFileItemTargetTest, LooksForTheTargetAgainWhenItWasResolvedBefore)
{
    const auto alias = aliasTo("/alias", "/file");
    alias->resolvedFSRef();
    move("/file", "/moved");

    EXPECT_EQ(alias->resolvedURL(), url("/moved"));
}

TEST_F(ZEFBasicInfoFileItemTargetTest, KeepsTheURLThatItFound)
{
    const auto alias = aliasTo("/alias", "/file");
    alias->resolvedURL();
    move("/file", "/moved");

    EXPECT_EQ(alias->resolvedURL(), url("/file"));
}

TEST_F(ZEFBasicInfoFileItemTargetTest, HasNoURLForALostFile)
{
    const auto file = info("/file");
    files.remove("/file");
    file->currentURL();

    EXPECT_FALSE(file->resolvedURL());
    EXPECT_FALSE(file->resolvedPath());
}

TEST_F(ZEFBasicInfoFileItemTargetTest, ResolvesAnewAfterAResetOfTheAliasStatus)
{
    const auto alias = aliasTo("/alias", "/file");
    alias->resolvedFSRef();
    information.setAliasTarget(url("/alias"), ref("/folder"), folderURL("/folder"));
    EXPECT_TRUE(alias->resolvedFSRef()->hasNumbersOf(stat("/file")));

    EXPECT_TRUE(alias->resetAliasStatus());

    EXPECT_TRUE(alias->resolvedFSRef()->hasNumbersOf(stat("/folder")));
}

TEST_F(ZEFBasicInfoFileItemTargetTest, ForgetsExactlyTheAliasStatusInAReset)
{
    const auto alias = aliasTo("/alias", "/folder");
    alias->isDirectory();
    alias->isApplication();
    alias->isInvisible();
    alias->resolvedURL();
    const auto before = alias->description();
    ASSERT_NE(before.find("resolvedIsDirectory: 1, isDirectory: 1, isPackage: 0, "
                          "isApplication: 0, isInvisible: 0"),
        std::string::npos);
    const auto count = information.count();

    alias->resetAliasStatus();

    EXPECT_NE(alias->description().find("resolved url: file:///folder/, resolvedIsDirectory: -1, "
                                        "isDirectory: -1, isPackage: -1, isApplication: -1, "
                                        "isInvisible: 0"),
        std::string::npos);
    EXPECT_TRUE(alias->isAlias());
    EXPECT_EQ(alias->resolvedUTI(), zef::type::folder);
    EXPECT_EQ(information.count(), count);
}

} // namespace
