// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

#include "tests/support/FakeAliasData.h"
#include "tests/support/FakeFileItemFixture.h"
#include "tests/support/HeirItem.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

using Items = zef::Array<ZEFFileItem>;
using Dictionaries = zef::Array<ZEFArchiveDictionary>;
using URLs = zef::Array<zef::FileURL>;
using Paths = zef::Array<std::string>;

// Does what a test says while it is archived.
class MeddlingItem final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    using ZEFFileItem::ZEFFileItem;

    void loadDataIntoArchive(ZEFArchiveDictionary* dictionary) override
    {
        ZEFFileItem::loadDataIntoArchive(dictionary);
        whileArchived();
    }

    std::function<void()> whileArchived = [] {};
};

const ZEFFileItemClass MeddlingItem::classObject(
    "MeddlingItem", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<MeddlingItem>);

class ZEFFileItemBulkConversionTest : public FakeFileItemFixture {
protected:
    ZEFFileItemBulkConversionTest()
    {
        files.addFile("/one");
        files.addFile("/lost");
        files.addFile("/two");
        for (const auto* path : { "/one", "/lost", "/two" })
            items->addObject(item(path));
        hide("/lost", "/hidden");
        items->objectAtIndex(1)->currentURL();
    }

    const ZEFFileItemClass& fileClass = ZEFFileItem::classObject;
    FakeAliasData aliases;
    /// Of which the second one is lost.
    zef::Ref<Items> items = zef::makeRef<Items>();
};

TEST_F(ZEFFileItemBulkConversionTest, YieldsNothingForNothing)
{
    EXPECT_EQ(fileClass.archiveDictionariesForFileItems(nullptr), nullptr);
    EXPECT_EQ(fileClass.fileItemsForArchiveDictionaries(nullptr), nullptr);
    EXPECT_EQ(fileClass.urlsForFileItems(nullptr), nullptr);
    EXPECT_EQ(fileClass.fileItemsForURLs(nullptr), nullptr);
    EXPECT_EQ(fileClass.pathsForFileItems(nullptr), nullptr);
    EXPECT_EQ(fileClass.fileItemsForPaths(nullptr), nullptr);
}

TEST_F(ZEFFileItemBulkConversionTest, YieldsAnEmptyArrayForAnEmptyOne)
{
    EXPECT_TRUE(fileClass.archiveDictionariesForFileItems(zef::makeRef<Items>().get())->isEmpty());
    EXPECT_TRUE(fileClass.fileItemsForPaths(zef::makeRef<Paths>().get())->isEmpty());
}

TEST_F(ZEFFileItemBulkConversionTest, ArchivesItemsInOrderWithoutTheLostOne)
{
    const auto dictionaries = fileClass.archiveDictionariesForFileItems(items.get());

    ASSERT_EQ(dictionaries->count(), 2u);
    EXPECT_EQ(*dictionaries->objectAtIndex(0)->stringForKey(ZEFArchivePathKey), "/one");
    EXPECT_EQ(*dictionaries->objectAtIndex(1)->stringForKey(ZEFArchivePathKey), "/two");
}

TEST_F(ZEFFileItemBulkConversionTest, RestoresItemsInOrderWithoutThoseThatAreGone)
{
    const auto dictionaries = fileClass.archiveDictionariesForFileItems(items.get());
    items->removeAllObjects();
    hide("/one", "/hidden too");
    const auto restored = fileClass.fileItemsForArchiveDictionaries(dictionaries.get());

    ASSERT_EQ(restored->count(), 1u);
    EXPECT_EQ(restored->objectAtIndex(0)->url().path(), "/two");
    EXPECT_EQ(restored->objectAtIndex(0)->retainCount(), 1u);
}

TEST_F(ZEFFileItemBulkConversionTest, RestoresThroughTheReaderOfTheClassThatIsAsked)
{
    auto dictionaries = zef::makeRef<Dictionaries>();
    auto dictionary = zef::makeRef<ZEFArchiveDictionary>();
    dictionary->setStringForKey("/one", "instead");
    dictionaries->addObject(dictionary);

    EXPECT_TRUE(fileClass.fileItemsForArchiveDictionaries(dictionaries.get())->isEmpty());
    EXPECT_EQ(
        HeirItem::classObject.fileItemsForArchiveDictionaries(dictionaries.get())->count(), 1u);
}

TEST_F(ZEFFileItemBulkConversionTest, TellsURLsAsLastSeen)
{
    move("/two", "/renamed");
    const auto urls = fileClass.urlsForFileItems(items.get());

    ASSERT_EQ(urls->count(), 2u);
    EXPECT_EQ(urls->objectAtIndex(0), url("/one"));
    EXPECT_EQ(urls->objectAtIndex(1), url("/two"));
}

TEST_F(ZEFFileItemBulkConversionTest, MakesItemsOfURLs)
{
    auto urls = zef::makeRef<URLs>();
    for (const auto& each : { url("/two"), url("/missing"), zef::FileURL(), url("/one") })
        urls->addObject(each);
    const auto made = fileClass.fileItemsForURLs(urls.get());

    ASSERT_EQ(made->count(), 2u);
    EXPECT_EQ(made->objectAtIndex(0), items->objectAtIndex(2));
    EXPECT_EQ(made->objectAtIndex(1), items->objectAtIndex(0));
}

TEST_F(ZEFFileItemBulkConversionTest, TellsPathsAsLastSeen)
{
    move("/two", "/renamed");
    const auto paths = fileClass.pathsForFileItems(items.get());

    ASSERT_EQ(paths->count(), 2u);
    EXPECT_EQ(paths->objectAtIndex(0), "/one");
    EXPECT_EQ(paths->objectAtIndex(1), "/two");
}

TEST_F(ZEFFileItemBulkConversionTest, MakesItemsOfPathsInTheClassThatIsAsked)
{
    files.addFile("/new");
    auto paths = zef::makeRef<Paths>();
    for (const auto* path : { "/new", "/missing", "" })
        paths->addObject(path);
    const auto made = NotedItem::classObject.fileItemsForPaths(paths.get());

    ASSERT_EQ(made->count(), 1u);
    EXPECT_TRUE(made->objectAtIndex(0)->isKindOfClass(NotedItem::classObject));
    EXPECT_EQ(made->objectAtIndex(0)->retainCount(), 1u);
}

TEST_F(ZEFFileItemBulkConversionTest, ReportsAnArrayThatIsChangedMeanwhile)
{
    files.addFile("/meddling");
    const auto made = MeddlingItem::classObject.newFileItemForPath("/meddling");
    auto& meddling = static_cast<MeddlingItem&>(*made);
    items->addObject(made);
    meddling.whileArchived = [this] { items->removeObjectAtIndex(0); };

    EXPECT_THROW(fileClass.archiveDictionariesForFileItems(items.get()), zef::MutationError);
}

} // namespace
