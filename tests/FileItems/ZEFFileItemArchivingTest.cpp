// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

#include "tests/support/FakeAliasData.h"
#include "tests/support/FakeFileItemFixture.h"
#include "tests/support/HeirItem.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Keeps everything to itself.
class SilentItem final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    using ZEFFileItem::ZEFFileItem;

    void loadDataIntoArchive(ZEFArchiveDictionary*) override { }
};

const ZEFFileItemClass SilentItem::classObject(
    "SilentItem", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<SilentItem>);

class ZEFFileItemArchivingTest : public FakeFileItemFixture {
protected:
    ZEFFileItemArchivingTest() { files.addFile("/file"); }

    static zef::Ref<ZEFArchiveDictionary> dictionaryWithPath(std::string_view path)
    {
        auto dictionary = zef::makeRef<ZEFArchiveDictionary>();
        dictionary->setStringForKey(path, ZEFArchivePathKey);
        return dictionary;
    }

    static zef::Ref<ZEFFileItem> restore(const zef::Ref<ZEFArchiveDictionary>& dictionary)
    {
        return ZEFFileItem::classObject.newFileItemForArchiveDictionary(dictionary.get());
    }

    // Finds out that its file is gone.
    zef::Ref<ZEFFileItem> lostItem(std::string_view path)
    {
        files.addFile(path);
        auto lost = item(path);
        hide(path, std::string(path) + " hidden");
        lost->currentURL();
        return lost;
    }

    FakeAliasData aliases;
};

// --- Making -------------------------------------------------------------------------------------

TEST_F(ZEFFileItemArchivingTest, HoldsThePathAndTheData)
{
    const auto dictionary = item("/file")->archiveDictionary();

    ASSERT_TRUE(dictionary);
    EXPECT_EQ(*dictionary->stringForKey(ZEFArchivePathKey), "/file");
    EXPECT_EQ(dictionary->dataForKey(ZEFArchiveDataKey)->size(), sizeof(zef::FSRef));
    EXPECT_EQ(dictionary->count(), 2u);
}

TEST_F(ZEFFileItemArchivingTest, HoldsThePathAloneWhenTheDataCannotBeMade)
{
    aliases.setMakeResult(zef::FileError::io);
    const auto dictionary = item("/file")->archiveDictionary();

    ASSERT_TRUE(dictionary);
    EXPECT_EQ(dictionary->count(), 1u);
    EXPECT_EQ(*dictionary->stringForKey(ZEFArchivePathKey), "/file");
}

TEST_F(ZEFFileItemArchivingTest, SaysWhyTheDataCannotBeMade)
{
    aliases.setMakeResult(zef::FileError::notFound);
    item("/file")->archiveDictionary();

    EXPECT_EQ(log.lines(),
        std::vector<std::string>{ "Error -43 creating aliasHandle to make aliashandledata for file "
                                  "file:///file" });
}

TEST_F(ZEFFileItemArchivingTest, IsNilForALostItem)
{
    EXPECT_EQ(lostItem("/lost")->archiveDictionary(), nullptr);
}

TEST_F(ZEFFileItemArchivingTest, IsNilForAnItemWithoutAReference)
{
    locator.setRefusesReferences(true);

    EXPECT_EQ(item("/file")->archiveDictionary(), nullptr);
}

TEST_F(ZEFFileItemArchivingTest, TakesTheReferenceOfAnItemFromAListing)
{
    const auto listed = ZEFFileItem::classObject.ZEF_newFileItemForEntry(
        url("/file"), ref("/file"), stat("/file"));
    ASSERT_EQ(locator.retainCount(), 0);
    listed->archiveDictionary();

    EXPECT_EQ(locator.retainCount(), 1);
}

TEST_F(ZEFFileItemArchivingTest, HoldsWhatASubclassAdds)
{
    const auto noted = NotedItem::classObject.newFileItemForPath("/file");
    const auto dictionary = noted->archiveDictionary();

    EXPECT_EQ(dictionary->count(), 3u);
    EXPECT_EQ(*dictionary->stringForKey("note"), "noted");
}

TEST_F(ZEFFileItemArchivingTest, IsNilWhenASubclassAddsNothing)
{
    const auto silent = SilentItem::classObject.newFileItemForPath("/file");

    EXPECT_EQ(silent->archiveDictionary(), nullptr);
}

// --- Restoring ----------------------------------------------------------------------------------

TEST_F(ZEFFileItemArchivingTest, YieldsTheItemThatIsAlive)
{
    const auto file = item("/file");
    const auto dictionary = file->archiveDictionary();
    move("/file", "/renamed");
    aliases.setResolveResult(zef::FileError::none, url("/renamed"));

    EXPECT_EQ(restore(dictionary), file);
}

TEST_F(ZEFFileItemArchivingTest, YieldsANewItemWhereTheDataLead)
{
    const auto dictionary = item("/file")->archiveDictionary();
    move("/file", "/renamed");
    aliases.setResolveResult(zef::FileError::none, url("/renamed"));
    const auto restored = restore(dictionary);

    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->url(), url("/renamed"));
    EXPECT_TRUE(restored->refValid());
    EXPECT_EQ(restored->retainCount(), 1u);
}

TEST_F(ZEFFileItemArchivingTest, FollowsThePathWhenTheDataLeadNowhere)
{
    const auto dictionary = item("/file")->archiveDictionary();
    const auto restored = restore(dictionary);

    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->currentPath(), "/file");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemArchivingTest, DoesNotFollowThePathWhenTheFactoryHasNothingForTheData)
{
    const auto dictionary = item("/file")->archiveDictionary();
    aliases.setResolveResult(zef::FileError::none, url("/missing"));

    EXPECT_EQ(restore(dictionary), nullptr);
}

TEST_F(ZEFFileItemArchivingTest, FollowsThePathWithoutData)
{
    const auto restored = restore(dictionaryWithPath("/file"));

    EXPECT_EQ(restored, item("/file"));
    EXPECT_EQ(aliases.resolveCount(), 0);
}

TEST_F(ZEFFileItemArchivingTest, FollowsThePathWhereTheDataAreNoData)
{
    auto dictionary = dictionaryWithPath("/file");
    dictionary->setStringForKey("text", ZEFArchiveDataKey);

    EXPECT_EQ(restore(dictionary), item("/file"));
}

TEST_F(ZEFFileItemArchivingTest, YieldsNothingForEmptyDataEvenWithAGoodPath)
{
    auto dictionary = dictionaryWithPath("/file");
    dictionary->setDataForKey({}, ZEFArchiveDataKey);

    EXPECT_EQ(restore(dictionary), nullptr);
    EXPECT_EQ(aliases.resolveCount(), 0);
}

TEST_F(ZEFFileItemArchivingTest, YieldsNothingWhenNeitherLeadsToAFile)
{
    const auto dictionary = item("/file")->archiveDictionary();
    hide("/file", "/hidden");

    EXPECT_EQ(restore(dictionary), nullptr);
}

TEST_F(ZEFFileItemArchivingTest, YieldsNothingForNothing)
{
    EXPECT_EQ(restore(nullptr), nullptr);
    EXPECT_EQ(restore(zef::makeRef<ZEFArchiveDictionary>()), nullptr);
}

TEST_F(ZEFFileItemArchivingTest, AsksTheSubclassThatReadsArchivesItself)
{
    auto dictionary = dictionaryWithPath("/file");
    dictionary->setStringForKey("/other", "instead");
    files.addFile("/other");
    const auto restored = NotedItem::classObject.newFileItemForArchiveDictionary(dictionary.get());

    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->url().path(), "/other");
    EXPECT_TRUE(restored->isKindOfClass(NotedItem::classObject));
}

TEST_F(ZEFFileItemArchivingTest, LetsASubclassFallBackToItsSuperclass)
{
    const auto dictionary = dictionaryWithPath("/file");
    const auto restored = NotedItem::classObject.newFileItemForArchiveDictionary(dictionary.get());

    ASSERT_TRUE(restored);
    EXPECT_TRUE(restored->isKindOfClass(NotedItem::classObject));
}

TEST_F(ZEFFileItemArchivingTest, InheritsTheReaderAndMakesItemsOfTheClassThatWasAsked)
{
    auto dictionary = dictionaryWithPath("/file");
    dictionary->setStringForKey("/other", "instead");
    files.addFile("/other");
    const auto restored = HeirItem::classObject.newFileItemForArchiveDictionary(dictionary.get());

    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->url().path(), "/other");
    EXPECT_TRUE(restored->isKindOfClass(HeirItem::classObject));
}

} // namespace
