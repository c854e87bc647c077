// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "tests/support/RecursiveLoadOperationFixture.h"
#include "tests/support/SpyCatalog.h"
#include "tests/support/UnderscoreFilter.h"

#include <limits>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using zef::makeRef;
using zef::Ref;

/// Descends into the folders whose names don't begin with an underscore.
class UnderscoreDirectoryFilter final : public ZEFDirectoryFilter {
public:
    bool shouldIncludeFile(ZEFFileItem* file) const override
    {
        return ZEFDirectoryFilter::shouldIncludeFile(file) && nameOf(*file)[0] != '_';
    }
};

/// Walks real folders to their ends.
class ZEFFileLoadOperationWalkTest : public RecursiveLoadOperationFixture {
protected:
    /// loaded/a, loaded/sub/b and loaded/sub/deep/c.
    void makeTree()
    {
        folder.write("loaded/a");
        folder.makeFolder("loaded/sub");
        folder.write("loaded/sub/b");
        folder.makeFolder("loaded/sub/deep");
        folder.write("loaded/sub/deep/c");
    }

    /// The names that a new walk of the tree finds when it may go so deep.
    Words walkTo(std::ptrdiff_t depth)
    {
        load = makeRef<ZEFFileLoadOperation>();
        load->setRecursive(true);
        load->setDepth(depth);
        begin({ "loaded" });
        auto names = run();
        std::sort(names.begin(), names.end());
        return names;
    }
};

// --- What it is set up with

TEST_F(ZEFFileLoadOperationWalkTest, BeginsWithoutFilesWithoutALimitAndWithADirectoryFilter)
{
    const auto fresh = makeRef<ZEFFileLoadOperation>();

    EXPECT_FALSE(fresh->recursive());
    EXPECT_EQ(fresh->filesToIterate(), nullptr);
    EXPECT_EQ(fresh->depth(), -1);
    ASSERT_TRUE(fresh->directoryFilter());
    EXPECT_EQ(&fresh->directoryFilter()->objectClass(), &ZEFDirectoryFilter::classObject);
}

TEST_F(ZEFFileLoadOperationWalkTest, KeepsACopyOfItsFilesAndItsFilterUntilItsEnd)
{
    const auto filter = ZEFDirectoryFilter::filter();
    auto files = makeRef<ZEFFileItemArray>();
    files->addObject(loaded);
    load->setDirectoryFilter(filter);
    load->setFilesToIterate(files.get());
    files->removeAllObjects();

    EXPECT_EQ(load->directoryFilter(), filter.get());
    ASSERT_EQ(load->filesToIterate()->count(), 1u);
    EXPECT_EQ(load->filesToIterate()->objectAtIndex(0), loaded.get());

    load->setFilesToIterate(nullptr);
    EXPECT_EQ(load->filesToIterate(), nullptr);
    load->setDirectoryFilter(nullptr);
    EXPECT_EQ(filter->retainCount(), 1u);
    EXPECT_EQ(loaded->retainCount(), 2u); // the folder to list
}

TEST_F(ZEFFileLoadOperationWalkTest, LeavesTheSettingsOfAWalkAloneWhenItIsNotRecursive)
{
    makeTree();
    load->setRecursive(false);
    load->setLoadingDirectory(loaded);
    load->setDepth(0);
    load->setDirectoryFilter(nullptr);

    EXPECT_THAT(walk(), UnorderedElementsAre("loaded/a", "loaded/sub"));
}

TEST_F(ZEFFileLoadOperationWalkTest, LeavesTheFolderToListAloneWhenItIsRecursive)
{
    makeTree();
    folder.makeFolder("other");
    folder.write("other/file");
    load->setLoadingDirectory(item("other"));
    load->setDepth(1);

    EXPECT_THAT(walk(), UnorderedElementsAre("loaded/a", "loaded/sub", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkTest, FindsNothingWithoutFiles)
{
    load->setFilesToIterate(nullptr);

    EXPECT_THAT(walk(), IsEmpty());
    EXPECT_TRUE(load->isFinished());
}

// --- How deep

TEST_F(ZEFFileLoadOperationWalkTest, FindsEverythingBelowWithoutALimit)
{
    makeTree();

    EXPECT_THAT(sortedWalk(),
        ElementsAre("loaded", "loaded/a", "loaded/sub", "loaded/sub/b", "loaded/sub/deep",
            "loaded/sub/deep/c"));
}

TEST_F(ZEFFileLoadOperationWalkTest, ListsAsManyLevelsAsItsDepth)
{
    makeTree();

    EXPECT_THAT(walkTo(1), ElementsAre("a", "loaded", "sub"));
    EXPECT_THAT(walkTo(2), ElementsAre("a", "b", "deep", "loaded", "sub"));
    EXPECT_THAT(walkTo(3), ElementsAre("a", "b", "c", "deep", "loaded", "sub"));
    EXPECT_THAT(walkTo(100), SizeIs(6));
}

TEST_F(ZEFFileLoadOperationWalkTest, ListsNoFolderWithADepthOfZeroOrBelowMinusOne)
{
    SpyCatalog catalog;
    makeTree();

    EXPECT_THAT(walkTo(0), ElementsAre("loaded"));
    EXPECT_THAT(walkTo(-2), ElementsAre("loaded"));
    EXPECT_THAT(walkTo(std::numeric_limits<std::ptrdiff_t>::min()), ElementsAre("loaded"));
    EXPECT_EQ(catalog.openCount, 0);
}

// A folder that was too deep when it was met first isn't ticked off.
TEST_F(ZEFFileLoadOperationWalkTest, ListsAFolderThatIsTooDeepOnOneWayAndNotOnAnother)
{
    makeTree();
    load->setDepth(1);
    begin({ "loaded", "loaded/sub" });

    EXPECT_THAT(sortedWalk(),
        ElementsAre("loaded", "loaded/a", "loaded/sub", "loaded/sub/b", "loaded/sub/deep"));
}

// --- Order

TEST_F(ZEFFileLoadOperationWalkTest, AppendsTheFilesItBeganWithAtTheEndInTheirOrder)
{
    makeTree();
    folder.write("z");
    folder.write("y");
    begin({ "z", "loaded/sub/deep", "y" });

    EXPECT_THAT(walk(), ElementsAre("loaded/sub/deep/c", "z", "loaded/sub/deep", "y"));
}

TEST_F(ZEFFileLoadOperationWalkTest, PutsAFolderBehindItsContents)
{
    folder.makeFolder("loaded/sub");
    folder.makeFolder("loaded/sub/deep");
    folder.write("loaded/sub/deep/c");

    EXPECT_THAT(
        walk(), ElementsAre("loaded/sub/deep/c", "loaded/sub/deep", "loaded/sub", "loaded"));
}

// --- Once

TEST_F(ZEFFileLoadOperationWalkTest, AppendsAFileItBeganWithOnlyIfItWasNotFound)
{
    makeTree();
    begin({ "loaded/a", "loaded/sub", "loaded" });

    EXPECT_THAT(sortedWalk(),
        ElementsAre("loaded", "loaded/a", "loaded/sub", "loaded/sub/b", "loaded/sub/deep",
            "loaded/sub/deep/c"));
}

TEST_F(ZEFFileLoadOperationWalkTest, AppendsAFileItBeganWithTwiceOnlyOnce)
{
    folder.write("file");
    begin({ "file", "loaded", "file", "loaded" });

    EXPECT_THAT(walk(), ElementsAre("file", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkTest, ListsAFolderOnceThatIsAlsoInsideAnother)
{
    SpyCatalog catalog;
    makeTree();
    begin({ "loaded", "loaded/sub", "loaded/sub/deep" });
    walk();

    EXPECT_EQ(catalog.openCount, 3);
    EXPECT_THAT(places(), SizeIs(6));
}

TEST_F(ZEFFileLoadOperationWalkTest, AppendsEachNameOfAFileThatItFinds)
{
    folder.write("loaded/a");
    folder.link("loaded/a", "loaded/b");
    walk();

    ASSERT_EQ(load->loadingArray()->count(), 3u);
    EXPECT_EQ(load->loadingArray()->objectAtIndex(0), load->loadingArray()->objectAtIndex(1));
}

// --- Filters

TEST_F(ZEFFileLoadOperationWalkTest, DescendsIntoNothingWithoutADirectoryFilter)
{
    makeTree();
    folder.write("_z");
    load->setDirectoryFilter(nullptr);
    load->setFileFilter(makeRef<UnderscoreFilter>());
    begin({ "loaded", "_z", "loaded/a" });

    EXPECT_THAT(walk(), ElementsAre("loaded", "loaded/a"));
}

TEST_F(ZEFFileLoadOperationWalkTest, DescendsIntoFoldersThatItsFileFilterRejects)
{
    folder.makeFolder("loaded/_sub");
    folder.write("loaded/_sub/a");
    folder.write("loaded/_sub/_b");
    load->setFileFilter(makeRef<UnderscoreFilter>());

    EXPECT_THAT(walk(), ElementsAre("loaded/_sub/a", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkTest, DeliversFoldersThatItsDirectoryFilterRejects)
{
    folder.makeFolder("loaded/_sub");
    folder.write("loaded/_sub/a");
    load->setDirectoryFilter(makeRef<UnderscoreDirectoryFilter>());

    EXPECT_THAT(walk(), ElementsAre("loaded/_sub", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkTest, DeliversAFolderItBeganWithThatItsDirectoryFilterRejects)
{
    folder.makeFolder("_start");
    folder.write("_start/a");
    load->setDirectoryFilter(makeRef<UnderscoreDirectoryFilter>());
    begin({ "_start" });

    EXPECT_THAT(walk(), ElementsAre("_start"));
}

TEST_F(ZEFFileLoadOperationWalkTest, LeavesOutAFileItBeganWithThatItsFileFilterRejects)
{
    folder.makeFolder("_start");
    folder.write("_start/a");
    load->setFileFilter(makeRef<UnderscoreFilter>());
    begin({ "_start" });

    EXPECT_THAT(walk(), ElementsAre("_start/a"));
}

TEST_F(ZEFFileLoadOperationWalkTest, GoesOnWhenItsFilterHasNoFolderToList)
{
    class Undecided final : public ZEFDirectoryFilter {
    public:
        Ref<ZEFFileItem> trueDirectoryObjectForFile(ZEFFileItem* file) const override
        {
            return nameOf(*file) == "sub" ? nullptr : file;
        }
    };
    makeTree();
    load->setDirectoryFilter(makeRef<Undecided>());

    EXPECT_THAT(walk(), UnorderedElementsAre("loaded/a", "loaded/sub", "loaded"));
}

// --- Items

TEST_F(ZEFFileLoadOperationWalkTest, MakesTheItemsOfEachFolderByTheClassOfItsOwnItem)
{
    makeTree();
    const auto sub = ZEFFileItem::classObject.newFileItemForURL(folder.url("loaded/sub"));
    walk();

    for (const auto& each : *load->loadingArray()) {
        const bool isInSub = each->url().path().find("/sub/") != std::string::npos;
        const ZEFFileItemClass& expected = isInSub || each == sub ? ZEFFileItem::classObject
                                                                  : ReportingItem::classObject;
        EXPECT_EQ(&each->objectClass(), &expected) << each->url().path();
    }
}

TEST_F(ZEFFileLoadOperationWalkTest, FindsTheCanonicalItems)
{
    makeTree();
    const auto known = item("loaded/sub/deep/c");
    walk();

    EXPECT_TRUE(load->loadingArray()->containsIdentical(known.get()));
    EXPECT_TRUE(load->loadingArray()->containsIdentical(loaded.get()));
}

TEST_F(ZEFFileLoadOperationWalkTest, FindsItsWayThroughAFolderThatWasKnownByAnotherPath)
{
    makeTree();
    folder.makeFolder("elsewhere");
    folder.makeFolder("elsewhere/known");
    folder.write("elsewhere/known/k");
    const auto known = item("elsewhere/known");
    folder.rename("elsewhere/known", "loaded/known");

    const auto names = sortedWalk();
    EXPECT_THAT(names, testing::Contains("loaded/known/k"));
    EXPECT_TRUE(load->loadingArray()->containsIdentical(known.get()));
}

} // namespace
