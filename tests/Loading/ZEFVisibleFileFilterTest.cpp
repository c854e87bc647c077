// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFVisibleFileFilter.h"

#include "tests/support/BasicInfoFixture.h"

namespace {

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

} // namespace
