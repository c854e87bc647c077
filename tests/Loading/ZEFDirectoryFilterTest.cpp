// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFDirectoryFilter.h"

#include "tests/support/BasicInfoFixture.h"

namespace {

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

} // namespace
