// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFilters.h"

#include "tests/support/BasicInfoFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace {

TEST(ZEFFileFilterTest, TakesEveryFileAndNil)
{
    TemporaryFolder folder;
    const auto file = ZEFFileItem::classObject.newFileItemForURL(folder.write(".hidden"));
    const auto filter = ZEFFileFilter::filter();

    EXPECT_TRUE(filter->shouldIncludeFile(file.get()));
    EXPECT_TRUE(filter->shouldIncludeFile(nullptr));
}

TEST(ZEFFileFilterTest, IsANewOneEachTime)
{
    const auto filter = ZEFFileFilter::filter();

    EXPECT_NE(filter, ZEFFileFilter::filter());
    EXPECT_EQ(filter->retainCount(), 1u);
    EXPECT_EQ(&filter->objectClass(), &ZEFFileFilter::classObject);
}

class ZEFVisibleFileFilterTest : public BasicInfoFixture {
protected:
    zef::Ref<ZEFVisibleFileFilter> filter = ZEFVisibleFileFilter::filter();
};

TEST_F(ZEFVisibleFileFilterTest, IsANewOneOfItsClassEachTime)
{
    EXPECT_NE(filter, ZEFVisibleFileFilter::filter());
    EXPECT_EQ(&filter->objectClass(), &ZEFVisibleFileFilter::classObject);
    EXPECT_TRUE(filter->isKindOfClass(ZEFFileFilter::classObject));
}

TEST_F(ZEFVisibleFileFilterTest, TakesWhatPeopleSee)
{
    files.addFile("/file");
    files.addFolder("/folder");

    EXPECT_TRUE(filter->shouldIncludeFile(info("/file").get()));
    EXPECT_TRUE(filter->shouldIncludeFile(infoAt(folderURL("/folder")).get()));
}

TEST_F(ZEFVisibleFileFilterTest, LeavesOutWhatIsHidden)
{
    files.addFile("/file");
    files.addFolder("/folder");
    information.setInvisible(url("/file"), true);
    information.setInvisible(url("/folder"), true);

    EXPECT_FALSE(filter->shouldIncludeFile(info("/file").get()));
    EXPECT_FALSE(filter->shouldIncludeFile(infoAt(folderURL("/folder")).get()));
}

TEST_F(ZEFVisibleFileFilterTest, LeavesOutTheFoldersOfHomesAndOfTheNetwork)
{
    files.addFolder("/home");
    files.addFolder("/net");

    EXPECT_FALSE(filter->shouldIncludeFile(infoAt(folderURL("/home")).get()));
    EXPECT_FALSE(filter->shouldIncludeFile(infoAt(folderURL("/net")).get()));
}

TEST_F(ZEFVisibleFileFilterTest, GoesByTheAliasAndNotByItsTarget)
{
    files.addFolder("/hidden");
    information.setInvisible(url("/hidden"), true);
    const auto alias = aliasTo("/alias", "/hidden");

    EXPECT_TRUE(filter->shouldIncludeFile(alias.get()));
}

TEST_F(ZEFVisibleFileFilterTest, TakesNilAndItemsThatDontKnowWhetherTheyAreHidden)
{
    files.addFile("/file");
    information.setInvisible(url("/file"), true);

    EXPECT_TRUE(filter->shouldIncludeFile(nullptr));
    EXPECT_TRUE(filter->shouldIncludeFile(item("/file").get()));
    EXPECT_EQ(information.count(), 0U);
}

TEST_F(ZEFVisibleFileFilterTest, TakesItemsOfAHostsSubclassForWhatTheyAre)
{
    class Photo final : public ZEFBasicInfoFileItem {
    public:
        using ZEFBasicInfoFileItem::ZEFBasicInfoFileItem;
        const ZEFFileItemClass& objectClass() const override { return photos(); }

        static const ZEFFileItemClass& photos()
        {
            static const ZEFFileItemClass object(
                "Photo", &ZEFBasicInfoFileItem::classObject, ZEFFileItemClass::initializer<Photo>);
            return object;
        }
    };
    files.addFile("/hidden");
    information.setInvisible(url("/hidden"), true);
    const auto photo = Photo::photos().newFileItemForURL(url("/hidden"));

    EXPECT_FALSE(filter->shouldIncludeFile(photo.get()));
}

class ZEFDirectoryFilterTest : public BasicInfoFixture {
protected:
    zef::Ref<ZEFDirectoryFilter> filter = ZEFDirectoryFilter::filter();
};

TEST_F(ZEFDirectoryFilterTest, IsANewOneOfItsClassEachTime)
{
    EXPECT_NE(filter, ZEFDirectoryFilter::filter());
    EXPECT_EQ(&filter->objectClass(), &ZEFDirectoryFilter::classObject);
    EXPECT_TRUE(filter->isKindOfClass(ZEFFileFilter::classObject));
}

TEST_F(ZEFDirectoryFilterTest, TakesEveryRealFolderHiddenOnesAndPackagesToo)
{
    for (const auto* path : { "/folder", "/hidden", "/package" })
        files.addFolder(path);
    information.setInvisible(url("/hidden"), true);
    information.setContentType(url("/package"), std::string(zef::type::package));

    for (const auto* path : { "/folder", "/hidden", "/package" }) {
        EXPECT_TRUE(filter->shouldIncludeFile(infoAt(folderURL(path)).get())) << path;
        EXPECT_TRUE(filter->shouldIncludeFile(item(path).get())) << path;
    }
}

TEST_F(ZEFDirectoryFilterTest, LeavesOutFilesAndAliasesAndLinksToFolders)
{
    files.addFile("/file");
    files.addFolder("/folder");

    EXPECT_FALSE(filter->shouldIncludeFile(item("/file").get()));
    EXPECT_FALSE(filter->shouldIncludeFile(aliasTo("/alias", "/folder").get()));
    EXPECT_FALSE(filter->shouldIncludeFile(linkTo("/link", "/folder").get()));
}

TEST_F(ZEFDirectoryFilterTest, LeavesOutNil)
{
    EXPECT_FALSE(filter->shouldIncludeFile(nullptr));
}

TEST_F(ZEFDirectoryFilterTest, ListsTheFileItself)
{
    files.addFolder("/folder");
    const auto folder = item("/folder");
    const auto alias = aliasTo("/alias", "/folder");

    EXPECT_EQ(filter->trueDirectoryObjectForFile(folder.get()), folder);
    EXPECT_EQ(filter->trueDirectoryObjectForFile(alias.get()), alias);
    EXPECT_FALSE(filter->trueDirectoryObjectForFile(nullptr));
}

class ZEFNormalDirectoryFilterTest : public BasicInfoFixture {
protected:
    /// The item of a new folder.
    zef::Ref<ZEFBasicInfoFileItem> newFolder(std::string_view path)
    {
        files.addFolder(path);
        return infoAt(folderURL(path));
    }

    zef::Ref<ZEFNormalDirectoryFilter> filter = ZEFNormalDirectoryFilter::filter();
};

TEST_F(ZEFNormalDirectoryFilterTest, IsANewOneOfItsClassEachTime)
{
    EXPECT_NE(filter, ZEFNormalDirectoryFilter::filter());
    EXPECT_EQ(&filter->objectClass(), &ZEFNormalDirectoryFilter::classObject);
    EXPECT_TRUE(filter->isKindOfClass(ZEFDirectoryFilter::classObject));
}

TEST_F(ZEFNormalDirectoryFilterTest, TakesAFolderThatPeopleSee)
{
    const auto folder = newFolder("/folder");

    EXPECT_TRUE(filter->shouldIncludeFile(folder.get()));
    EXPECT_EQ(filter->trueDirectoryObjectForFile(folder.get()), folder);
}

TEST_F(ZEFNormalDirectoryFilterTest, LeavesOutAnInvisibleFolder)
{
    const auto folder = newFolder("/folder");
    information.setInvisible(url("/folder"), true);

    EXPECT_FALSE(filter->shouldIncludeFile(folder.get()));
}

TEST_F(ZEFNormalDirectoryFilterTest, LeavesOutAPackage)
{
    const auto package = newFolder("/package");
    information.setContentType(url("/package"), std::string(zef::type::package));

    EXPECT_FALSE(filter->shouldIncludeFile(package.get()));
}

TEST_F(ZEFNormalDirectoryFilterTest, TakesAnAliasToAFolderAndListsItsTarget)
{
    const auto folder = newFolder("/folder");
    const auto alias = aliasTo("/alias", "/folder");

    EXPECT_TRUE(filter->shouldIncludeFile(alias.get()));
    EXPECT_EQ(filter->trueDirectoryObjectForFile(alias.get()), folder);
}

TEST_F(ZEFNormalDirectoryFilterTest, TakesALinkToAFolderAndListsItsTarget)
{
    const auto folder = newFolder("/folder");
    const auto link = linkTo("/link", "/folder");

    EXPECT_TRUE(filter->shouldIncludeFile(link.get()));
    EXPECT_EQ(filter->trueDirectoryObjectForFile(link.get()), folder);
}

TEST_F(ZEFNormalDirectoryFilterTest, LeavesOutAnInvisibleAliasToAVisibleFolder)
{
    newFolder("/folder");
    const auto alias = aliasTo("/alias", "/folder");
    information.setInvisible(url("/alias"), true);

    EXPECT_FALSE(filter->shouldIncludeFile(alias.get()));
}

TEST_F(ZEFNormalDirectoryFilterTest, LeavesOutAnAliasToAFileOrAPackage)
{
    files.addFile("/file");
    newFolder("/package");
    information.setContentType(url("/package"), std::string(zef::type::package));

    EXPECT_FALSE(filter->shouldIncludeFile(aliasTo("/alias", "/file").get()));
    EXPECT_FALSE(filter->shouldIncludeFile(aliasTo("/other", "/package").get()));
}

TEST_F(ZEFNormalDirectoryFilterTest, AsksOnlyOfFoldersWhetherTheyAreInvisible)
{
    files.addFile("/file");
    const auto file = info("/file");
    const auto folder = newFolder("/folder");

    EXPECT_FALSE(filter->shouldIncludeFile(file.get()));
    EXPECT_EQ(information.count(Question::invisibility), 0U);
    EXPECT_TRUE(filter->shouldIncludeFile(folder.get()));
    EXPECT_EQ(information.count(Question::invisibility), 1U);
}

TEST_F(ZEFNormalDirectoryFilterTest, LeavesOutNilAndItemsThatDontKnowWhatTheyAre)
{
    files.addFolder("/folder");
    const auto folder = ZEFFileItem::classObject.newFileItemForURL(folderURL("/folder"));

    EXPECT_FALSE(filter->shouldIncludeFile(nullptr));
    EXPECT_FALSE(filter->shouldIncludeFile(folder.get()));
    EXPECT_EQ(information.count(), 0U);
}

TEST_F(ZEFNormalDirectoryFilterTest, HasNoFolderToListForNilAndForItemsThatDontKnowTheirTargets)
{
    files.addFolder("/folder");
    const auto folder = ZEFFileItem::classObject.newFileItemForURL(folderURL("/folder"));

    EXPECT_FALSE(filter->trueDirectoryObjectForFile(nullptr));
    EXPECT_FALSE(filter->trueDirectoryObjectForFile(folder.get()));
}

} // namespace
