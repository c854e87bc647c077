// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFNormalDirectoryFilter.h"

#include "tests/support/BasicInfoFixture.h"

namespace {

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
