// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

#include "tests/support/FileItemFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// The items that are archived live no longer than the archive is made, as if another run of the
// program had made it.
class ZEFFileItemArchivingOnDiskTest : public FileItemFixture {
protected:
    zef::Ref<ZEFArchiveDictionary> archive(std::string_view name) const
    {
        auto dictionary = item(name)->archiveDictionary();
        EXPECT_TRUE(dictionary && dictionary->dataForKey(ZEFArchiveDataKey)) << name;
        return dictionary;
    }

    // Where the restored item is, without the links on the way; empty when there is none.
    static std::string restoredPath(const zef::Ref<ZEFArchiveDictionary>& dictionary)
    {
        const auto restored = ZEFFileItem::classObject.newFileItemForArchiveDictionary(
            dictionary.get());
        return restored ? *restored->path() : std::string();
    }
};

INSTANTIATE_TEST_SUITE_P(, ZEFFileItemArchivingOnDiskTest,
    testing::Values(Spelling::direct, Spelling::throughLink), nameOfSpelling);

TEST_P(ZEFFileItemArchivingOnDiskTest, YieldsTheSameObjectAfterARenameWhileThatIsAlive)
{
    folder.write("file");
    const auto file = item("file");
    const auto dictionary = file->archiveDictionary();
    folder.rename("file", "renamed");

    EXPECT_EQ(ZEFFileItem::classObject.newFileItemForArchiveDictionary(dictionary.get()), file);
    EXPECT_EQ(file->currentURL(), url("renamed"));
}

TEST_P(ZEFFileItemArchivingOnDiskTest, YieldsANewObjectForTheRenamedFile)
{
    folder.write("file");
    const auto dictionary = archive("file");
    folder.rename("file", "renamed");

    EXPECT_EQ(restoredPath(dictionary), folder.path("renamed"));
}

TEST_P(ZEFFileItemArchivingOnDiskTest, FollowsARestoredFileFurther)
{
    folder.makeFolder("one");
    folder.write("file");
    const auto dictionary = archive("file");
    folder.rename("file", "renamed");
    const auto restored = ZEFFileItem::classObject.newFileItemForArchiveDictionary(
        dictionary.get());
    ASSERT_TRUE(restored);
    folder.rename("renamed", "again");

    EXPECT_EQ(restored->currentPath(), folder.path("again"));
}

TEST_P(ZEFFileItemArchivingOnDiskTest, FindsAFileAndItsFoldersWhereverTheyWent)
{
    folder.makeFolder("one");
    folder.makeFolder("one/two");
    folder.makeFolder("other");
    folder.write("one/two/file");
    const auto dictionary = archive("one/two/file");
    folder.rename("one/two", "other/\xff");

    EXPECT_EQ(restoredPath(dictionary), folder.path("other/\xff/file"));
}

TEST_P(ZEFFileItemArchivingOnDiskTest, FindsTheFileThatAnEditorSavedAnewByItsPath)
{
    folder.write("file", "old");
    const auto dictionary = archive("file");
    folder.write("new", "new");
    folder.rename("new", "file");

    EXPECT_EQ(restoredPath(dictionary), path("file"));
}

TEST_P(ZEFFileItemArchivingOnDiskTest, YieldsNothingForADeletedFile)
{
    folder.write("file");
    const auto dictionary = archive("file");
    folder.remove("file");

    EXPECT_EQ(restoredPath(dictionary), "");
    EXPECT_TRUE(log.lines().empty());
}

TEST_P(ZEFFileItemArchivingOnDiskTest, YieldsNothingWhenAnotherFileHasTheNumber)
{
    folder.write("file");
    const auto old = stat("file");
    const auto dictionary = archive("file");
    folder.remove("file");
    if (!writeWithNumberOf(old, "another"))
        GTEST_SKIP() << "the file system gives no number again";

    EXPECT_EQ(restoredPath(dictionary), "");
}

TEST_P(ZEFFileItemArchivingOnDiskTest, RestoresALinkAndNotItsTarget)
{
    folder.write("file");
    folder.symlink("file", "its link");
    const auto dictionary = archive("its link");
    folder.rename("its link", "renamed");

    EXPECT_EQ(restoredPath(dictionary), folder.path("renamed"));
}

TEST_P(ZEFFileItemArchivingOnDiskTest, FollowsThePathWhereTheDataAreDamaged)
{
    folder.write("file");
    const auto dictionary = archive("file");
    auto data = *dictionary->dataForKey(ZEFArchiveDataKey);
    data.back() ^= std::byte{ 1 };
    dictionary->setDataForKey(data, ZEFArchiveDataKey);
    EXPECT_EQ(restoredPath(dictionary), path("file"));
    folder.rename("file", "renamed");

    EXPECT_EQ(restoredPath(dictionary), "");
}

} // namespace
