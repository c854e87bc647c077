// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "tests/support/LogRecorder.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

// Real files, links, bundles and desktop entries.
class ZEFBasicInfoFileItemOnDiskTest : public testing::Test {
protected:
    static zef::Ref<ZEFBasicInfoFileItem> info(const zef::FileURL& url)
    {
        const auto item = ZEFBasicInfoFileItem::classObject.newFileItemForURL(url);
        return zef::Ref(zef::downcast<ZEFBasicInfoFileItem>(item.get()));
    }

    zef::Ref<ZEFBasicInfoFileItem> info(std::string_view name) { return info(folder.url(name)); }

    TemporaryFolder folder;
    LogRecorder log;
};

TEST_F(ZEFBasicInfoFileItemOnDiskTest, KnowsAFolderAPackageAndAFile)
{
    folder.makeFolder("folder");
    folder.makeFolder("Editor.AppDir");
    folder.write("file");

    EXPECT_TRUE(info("folder")->isDirectory());
    EXPECT_FALSE(info("folder")->isPackage());
    EXPECT_FALSE(info("Editor.AppDir")->isDirectory());
    EXPECT_TRUE(info("Editor.AppDir")->isPackage());
    EXPECT_TRUE(info("Editor.AppDir")->isApplication());
    EXPECT_FALSE(info("file")->isDirectory());
    EXPECT_FALSE(info("file")->isPackage());
    EXPECT_EQ(info("file")->uti(), zef::type::data);
}

// Every file of a walk with the normal directory filter is asked that.
TEST_F(ZEFBasicInfoFileItemOnDiskTest, KeepsNoTypeToSayThatAFileIsNoDirectory)
{
    folder.write("file.txt");
    const auto file = info("file.txt");

    EXPECT_FALSE(file->isDirectory());
    EXPECT_THAT(file->description(), testing::EndsWith("UTI: (null)"));
    EXPECT_EQ(file->uti(), "public.plain-text");
    EXPECT_THAT(file->description(), testing::EndsWith("UTI: public.plain-text"));
}

TEST_F(ZEFBasicInfoFileItemOnDiskTest, FollowsALinkToAFolder)
{
    folder.makeFolder("folder");
    folder.symlink("folder", "pointer");
    const auto link = info("pointer");

    EXPECT_FALSE(link->isRealFile());
    EXPECT_FALSE(link->isAlias());
    EXPECT_TRUE(link->isDirectory());
    EXPECT_EQ(link->resolvedFile(), info("folder"));
    EXPECT_EQ(link->resolvedPath(), folder.path("folder"));
}

TEST_F(ZEFBasicInfoFileItemOnDiskTest, FollowsAnAliasFileToAFolder)
{
    folder.makeFolder("folder");
    folder.write("alias.desktop",
        "[Desktop Entry]\nType=Link\nName=To it\nURL=" + folder.path("folder") + "\n");
    const auto alias = info("alias.desktop");

    EXPECT_TRUE(alias->isAlias());
    EXPECT_FALSE(alias->isRealFile());
    EXPECT_TRUE(alias->isDirectory());
    EXPECT_EQ(alias->displayName(), "To it");
    EXPECT_EQ(alias->fileName(), "alias.desktop");
    EXPECT_EQ(alias->resolvedFile(), info("folder"));
}

TEST_F(ZEFBasicInfoFileItemOnDiskTest, HasItsOwnTypeWhenItsLinkLeadsNowhere)
{
    folder.symlink("nowhere.png", "pointer");
    const auto link = info("pointer");

    EXPECT_EQ(link->resolvedUTI(), zef::type::symlink);
    EXPECT_EQ(link->resolvedURL(), link->url());
    EXPECT_FALSE(link->isDirectory());
    EXPECT_EQ(log.count("getting resolved UTI for file"), 1U);
}

TEST_F(ZEFBasicInfoFileItemOnDiskTest, EndsInARingOfLinks)
{
    folder.symlink("b", "a");
    folder.symlink("a", "b");

    EXPECT_FALSE(info("a")->isDirectory());
    EXPECT_FALSE(info("a")->isApplication());
    EXPECT_EQ(info("a")->resolvedURL(), folder.url("a"));
}

TEST_F(ZEFBasicInfoFileItemOnDiskTest, HidesDotFilesAndListedOnes)
{
    folder.write(".dot");
    folder.write("listed");
    folder.write("shown");
    folder.write(".hidden", "listed\n");

    EXPECT_TRUE(info(".dot")->isInvisible());
    EXPECT_TRUE(info("listed")->isInvisible());
    EXPECT_FALSE(info("shown")->isInvisible());
}

TEST_F(ZEFBasicInfoFileItemOnDiskTest, CostsLittleMoreThanAPlainItemUntilItIsAsked)
{
    EXPECT_LE(sizeof(ZEFBasicInfoFileItem), sizeof(ZEFFileItem) + 96);
}

} // namespace
