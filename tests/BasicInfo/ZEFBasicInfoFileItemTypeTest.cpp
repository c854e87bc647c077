// SPDX-License-Identifier: MIT
#include "tests/support/BasicInfoFixture.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* package = "org.freedesktop.package";

class ZEFBasicInfoFileItemTypeTest : public BasicInfoFixture { };

TEST_F(ZEFBasicInfoFileItemTypeTest, HasTheTypeThatTheSystemGivesForItsReference)
{
    files.addFile("/file");
    information.setContentType(url("/file"), "public.image");
    const auto file = info("/file");

    EXPECT_EQ(file->uti(), "public.image");
    EXPECT_EQ(file->uti(), "public.image");
    EXPECT_EQ(information.count(Question::contentType), 1U);
}

TEST_F(ZEFBasicInfoFileItemTypeTest, TakesTheTypeFromTheNameWhereTheSystemFails)
{
    files.addFile("/file.zefx");
    information.setError(Question::contentType, url("/file.zefx"), zef::FileError::notFound);

    EXPECT_EQ(info("/file.zefx")->uti(), "dyn.data.zefx");
}

TEST_F(ZEFBasicInfoFileItemTypeTest, TakesTheTypeFromTheNameWhereTheSystemGivesNone)
{
    files.addFolder("/folder.zefx");
    information.setContentType(url("/folder.zefx"), "");

    EXPECT_EQ(infoAt(folderURL("/folder.zefx"))->uti(), "dyn.directory.zefx");
}

TEST_F(ZEFBasicInfoFileItemTypeTest, TakesTheTypeFromTheNameWithoutAReference)
{
    files.addFile("/file");
    const auto file = withoutReference(url("/file"));

    EXPECT_EQ(file->uti(), "public.data");
    EXPECT_EQ(information.count(), 0U);
}

TEST_F(ZEFBasicInfoFileItemTypeTest, ReportsAPlainFolderAsDirectoryAndNotAsPackage)
{
    files.addFolder("/folder");
    const auto folder = infoAt(folderURL("/folder"));

    EXPECT_TRUE(folder->isDirectory());
    EXPECT_FALSE(folder->isPackage());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, ReportsAPackageAsPackageAndNeverAsDirectory)
{
    files.addFolder("/bundle");
    information.setContentType(url("/bundle"), package);
    const auto folder = infoAt(folderURL("/bundle"));

    EXPECT_TRUE(folder->isPackage());
    EXPECT_FALSE(folder->isDirectory());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, ReportsAFileAsNeitherDirectoryNorPackage)
{
    files.addFile("/file");
    information.setContentType(url("/file"), package);
    const auto file = info("/file");

    EXPECT_FALSE(file->isDirectory());
    EXPECT_FALSE(file->isPackage());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, KnowsAnApplicationByItsType)
{
    files.addFile("/app");
    files.addFile("/file");
    information.setContentType(url("/app"), "org.freedesktop.application-entry");

    EXPECT_TRUE(info("/app")->isApplication());
    EXPECT_FALSE(info("/file")->isApplication());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, IsAnAliasExactlyWhenItsTypeSaysSo)
{
    files.addFile("/file");
    files.addFolder("/folder");
    const auto alias = aliasTo("/alias", "/folder");
    const auto link = linkTo("/link", "/folder");

    EXPECT_TRUE(alias->isAlias());
    EXPECT_FALSE(link->isAlias());
    EXPECT_FALSE(info("/file")->isAlias());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, IsARealFileWhenItIsNeitherAliasNorLink)
{
    files.addFile("/file");
    files.addFolder("/folder");
    const auto alias = aliasTo("/alias", "/folder");
    const auto link = linkTo("/link", "/folder");

    EXPECT_TRUE(info("/file")->isRealFile());
    EXPECT_TRUE(infoAt(folderURL("/folder"))->isRealFile());
    EXPECT_FALSE(alias->isRealFile());
    EXPECT_FALSE(link->isRealFile());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, HasItsOwnTypeForResolvedTypeWhenItIsARealFile)
{
    files.addFile("/file");
    information.setContentType(url("/file"), "public.image");
    const auto file = info("/file");

    EXPECT_EQ(file->resolvedUTI(), "public.image");
    EXPECT_EQ(information.count(Question::aliasFile), 0U);
}

TEST_F(ZEFBasicInfoFileItemTypeTest, HasTheTargetsTypeForResolvedType)
{
    files.addFile("/file");
    information.setContentType(url("/file"), "public.image");

    EXPECT_EQ(aliasTo("/alias", "/file")->resolvedUTI(), "public.image");
    EXPECT_EQ(linkTo("/link", "/file")->resolvedUTI(), "public.image");
}

TEST_F(ZEFBasicInfoFileItemTypeTest, LogsTheErrorAndHasItsOwnTypeWhenTheTargetsIsNotToBeHad)
{
    files.addFile("/file");
    const auto alias = aliasTo("/alias", "/file");
    information.setError(Question::contentType, url("/file"), zef::FileError::notFound);

    EXPECT_EQ(alias->resolvedUTI(), zef::type::aliasFile);
    EXPECT_EQ(log.lines(),
        std::vector<std::string>{ "Error -43 getting resolved UTI for file file:///alias" });
}

TEST_F(ZEFBasicInfoFileItemTypeTest, HasItsOwnTypeOnceTheTargetIsKnownToBeUnusable)
{
    files.addFile("/file");
    const auto alias = aliasTo("/alias", "/file");
    information.setError(Question::aliasFile, url("/alias"), zef::FileError::notFound);
    alias->resolvedFSRef();

    EXPECT_EQ(alias->resolvedUTI(), zef::type::aliasFile);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, ReportsAnAliasToAFolderAsDirectory)
{
    files.addFolder("/folder");
    const auto alias = aliasTo("/alias", "/folder");

    EXPECT_TRUE(alias->isDirectory());
    EXPECT_FALSE(alias->isPackage());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, ReportsALinkToAPackageAsNeitherDirectoryNorPackage)
{
    files.addFolder("/bundle");
    information.setContentType(url("/bundle"), package);
    const auto link = linkTo("/link", "/bundle");

    EXPECT_FALSE(link->isDirectory());
    EXPECT_FALSE(link->isPackage());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, ReportsAnAliasToAFileAsNeitherDirectoryNorPackage)
{
    files.addFile("/file");
    const auto alias = aliasTo("/alias", "/file");

    EXPECT_FALSE(alias->isPackage());
    EXPECT_FALSE(alias->isDirectory());
}

TEST_F(ZEFBasicInfoFileItemTypeTest, IsAnApplicationWhenItLeadsToOne)
{
    files.addFile("/app");
    information.setContentType(url("/app"), "org.freedesktop.application-entry");

    EXPECT_TRUE(aliasTo("/alias", "/app")->isApplication());
}

} // namespace
