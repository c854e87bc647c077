// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

#include "tests/support/FileItemFixture.h"

#include <gtest/gtest.h>

namespace {

class ZEFBasicInfoFileItemArchivingTest : public FileItemFixture {
protected:
    zef::Ref<ZEFFileItem> info(std::string_view name)
    {
        return ZEFBasicInfoFileItem::classObject.newFileItemForURL(url(name));
    }

    static zef::Ref<ZEFFileItem> restored(const ZEFArchiveDictionary* archive)
    {
        return ZEFBasicInfoFileItem::classObject.newFileItemForArchiveDictionary(archive);
    }
};

INSTANTIATE_TEST_SUITE_P(, ZEFBasicInfoFileItemArchivingTest,
    testing::Values(Spelling::direct, Spelling::throughLink), [](const auto& spelling) {
        return spelling.param == Spelling::direct ? "Direct" : "ThroughLink";
    });

TEST_P(ZEFBasicInfoFileItemArchivingTest, MarksTheArchiveOfARealFile)
{
    folder.write("file");
    const auto archive = info("file")->archiveDictionary();

    const auto* mark = archive->valueForKey(ZEFArchiveIsAliasKey);
    ASSERT_TRUE(mark && std::holds_alternative<bool>(*mark));
    EXPECT_FALSE(std::get<bool>(*mark));
    EXPECT_TRUE(archive->dataForKey(ZEFArchiveDataKey));
}

TEST_P(ZEFBasicInfoFileItemArchivingTest, MarksTheArchivesOfLinksAndAliases)
{
    folder.write("file");
    folder.symlink("file", "pointer");
    folder.write("alias.desktop", "[Desktop Entry]\nType=Link\nURL=file:///\n");

    EXPECT_TRUE(info("pointer")->archiveDictionary()->booleanForKey(ZEFArchiveIsAliasKey));
    EXPECT_TRUE(info("alias.desktop")->archiveDictionary()->booleanForKey(ZEFArchiveIsAliasKey));
}

TEST_P(ZEFBasicInfoFileItemArchivingTest, FindsARealFileByItsReference)
{
    folder.write("file");
    const auto file = info("file");
    const auto archive = file->archiveDictionary();
    folder.rename("file", "renamed");

    EXPECT_EQ(restored(archive.get()), file);
}

TEST_P(ZEFBasicInfoFileItemArchivingTest, FindsAnAliasByItsPath)
{
    folder.write("file");
    folder.symlink("file", "pointer");
    const auto archive = info("pointer")->archiveDictionary();
    folder.rename("pointer", "renamed");
    folder.symlink("file", "pointer");

    const auto found = restored(archive.get());

    ASSERT_TRUE(found);
    EXPECT_EQ(found->fileiNode(), stat("pointer").inode);
    EXPECT_EQ(found->objectClass().name, ZEFBasicInfoFileItem::classObject.name);
}

TEST_P(ZEFBasicInfoFileItemArchivingTest, DoesNotFindAnAliasThatIsNoLongerAtItsPath)
{
    folder.symlink("nowhere", "pointer");
    const auto archive = info("pointer")->archiveDictionary();
    folder.rename("pointer", "renamed");

    EXPECT_EQ(restored(archive.get()), nullptr);
}

TEST_P(ZEFBasicInfoFileItemArchivingTest, DoesNotFindAnAliasWithoutAPath)
{
    const auto archive = zef::makeRef<ZEFArchiveDictionary>();
    archive->setBooleanForKey(true, ZEFArchiveIsAliasKey);

    EXPECT_EQ(restored(archive.get()), nullptr);
}

} // namespace
