// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/FakeCatalog.h"
#include "tests/support/RecursiveLoadOperationFixture.h"

#include <optional>
#include <set>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::makeRef;
using zef::Ref;

/// An item that cancels an operation when somebody asks for its hash.
class HashingItem final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }
    using ZEFFileItem::ZEFFileItem;

    inline static zef::Operation* victim = nullptr;

    std::size_t hash() const override
    {
        if (victim)
            victim->cancel();
        return ZEFFileItem::hash();
    }
};

const ZEFFileItemClass HashingItem::classObject(
    "HashingItem", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<HashingItem>);

/// Cancels the operation when it is asked about the file of this name.
class CancellingFilter final : public ZEFFileFilter {
public:
    CancellingFilter(zef::Operation& operation, std::string name)
        : _operation(operation)
        , _name(std::move(name))
    {
    }

    bool shouldIncludeFile(ZEFFileItem* file) const override
    {
        if (nameOf(*file) == _name)
            _operation.cancel();
        return true;
    }

private:
    zef::Operation& _operation;
    std::string _name;
};

/// Walks folders whose entries are made up and come in the order in which the test has added them.
class ZEFFileLoadOperationWalkOrderTest : public RecursiveLoadOperationFixture {
protected:
    ZEFFileLoadOperationWalkOrderTest()
    {
        catalog.add(loaded->url(), stat("loaded"));
        catalog.setReadHook([this](std::size_t) {
            if (++_reads == _lastRead)
                load->cancel();
        });
    }

    void addFile(const std::string& inFolder, const std::string& name)
    {
        catalog.addEntry(folder.folderUrl(inFolder), name, newStat(0100644));
    }

    void addFiles(const std::string& inFolder, const std::string& prefix, std::size_t count)
    {
        for (std::size_t number = 0; number < count; ++number)
            addFile(inFolder, numbered(prefix, number));
    }

    void addFolder(const std::string& inFolder, const std::string& name)
    {
        const auto made = newStat(0040755);
        catalog.addEntry(folder.folderUrl(inFolder), name, made);
        catalog.add(folder.folderUrl(inFolder + "/" + name), made);
    }

    /// From now on the read of this number, counted from 1 over all folders, is cancelled.
    void cancelInRead(std::size_t number) { _lastRead = number; }

    static std::string numbered(const std::string& prefix, std::size_t number)
    {
        return prefix + std::to_string(1000 + number).substr(1);
    }

    static void appendNumbered(
        Words& words, const std::string& prefix, std::size_t first, std::size_t end)
    {
        for (auto number = first; number < end; ++number)
            words.push_back(numbered(prefix, number));
    }

    FakeCatalog catalog;

private:
    zef::Stat newStat(std::uint32_t mode)
    {
        zef::Stat made;
        made.mode = mode;
        made.device = 0xfefe;
        made.inode = ++_lastInode;
        return made;
    }

    std::uint64_t _lastInode = 0;
    std::size_t _reads = 0;
    std::size_t _lastRead = 0;
};

TEST_F(ZEFFileLoadOperationWalkOrderTest, GoesDepthFirstByBatches)
{
    addFiles("loaded", "a", 10);
    addFolder("loaded", "sub");
    addFiles("loaded", "b", 60);
    addFiles("loaded/sub", "c", 45);
    addFolder("loaded/sub", "deep");
    addFiles("loaded/sub", "d", 2);
    addFiles("loaded/sub/deep", "e", 41);

    Words expected;
    appendNumbered(expected, "c", 0, 40);
    appendNumbered(expected, "e", 0, 41);
    appendNumbered(expected, "c", 40, 45);
    expected.emplace_back("deep");
    appendNumbered(expected, "d", 0, 2);
    appendNumbered(expected, "a", 0, 10);
    expected.emplace_back("sub");
    appendNumbered(expected, "b", 0, 60);
    expected.emplace_back("loaded");
    EXPECT_EQ(run(), expected);
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, ListsTheFoldersOfABatchInTheirOrder)
{
    addFolder("loaded", "z");
    addFile("loaded", "file");
    addFolder("loaded", "a");
    addFile("loaded/z", "in z");
    addFile("loaded/a", "in a");

    EXPECT_THAT(run(), ElementsAre("in z", "in a", "z", "file", "a", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, TurnsSlashesInNamesIntoColonsOnItsWay)
{
    addFolder("loaded", "a/b");
    catalog.move(folder.folderUrl("loaded/a/b"), folder.folderUrl("loaded/a:b"));
    addFile("loaded/a:b", "c/d");

    EXPECT_THAT(walk(), ElementsAre("loaded/a:b/c:d", "loaded/a:b", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, AppendsABatchAfterAllThatIsBelowIt)
{
    addFolder("loaded", "sub");
    addFiles("loaded/sub", "c", 100);
    std::vector<std::size_t> counts;
    catalog.setReadHook([&](std::size_t) { counts.push_back(load->loadingArray()->count()); });
    run();

    EXPECT_THAT(counts, ElementsAre(0u, 0u, 40u, 80u));
}

// --- Cancelling

TEST_F(ZEFFileLoadOperationWalkOrderTest, OpensNothingWhenItIsCancelledBeforehand)
{
    addFile("loaded", "a");
    load->cancel();

    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(catalog.openCount(), 0u);
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, DropsTheBatchInWhichItIsCancelledAndKeepsTheOthers)
{
    addFolder("loaded", "sub");
    addFile("loaded", "z");
    addFiles("loaded/sub", "c", 200);
    cancelInRead(4); // loaded, and the third of sub

    // What was read of the folder above before is delivered.
    EXPECT_THAT(run(), SizeIs(80 + 2));
    EXPECT_EQ(found().back(), "z");
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, OpensNoFurtherFolderOnceItIsCancelled)
{
    for (const auto* name : { "one", "two", "three" }) {
        addFolder("loaded", name);
        addFile(std::string("loaded/") + name, "file");
    }
    cancelInRead(2);

    EXPECT_THAT(run(), ElementsAre("one", "two", "three"));
    EXPECT_EQ(catalog.openCount(), 2u);
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, TakesNoFurtherFileToBeginWithOnceItIsCancelled)
{
    folder.makeFolder("other");
    catalog.add(folder.folderUrl("other"), stat("other"));
    addFile("loaded", "a");
    addFile("other", "b");
    begin({ "loaded", "other" });
    cancelInRead(1);

    EXPECT_THAT(run(), IsEmpty());
    EXPECT_EQ(catalog.openCount(), 1u);
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, AppendsNoFileItBeganWithWhenItIsCancelledAtTheLast)
{
    addFile("loaded", "a");
    load->setFileFilter(makeRef<CancellingFilter>(*load, "loaded"));

    EXPECT_THAT(run(), ElementsAre("a"));
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, StopsAfterEachFileItBeganWith)
{
    Ref<ZEFFileItem> one = HashingItem::classObject.newFileItemForURL(folder.write("one"));
    folder.write("two");
    auto files = makeRef<ZEFFileItemArray>();
    files->addObject(one);
    files->addObject(item("two"));
    load->setFilesToIterate(files.get());
    HashingItem::victim = load.get();
    run();
    HashingItem::victim = nullptr;

    EXPECT_THAT(found(), ElementsAre("one"));
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, KeepsItsTableOfFoldersWhenItIsCancelledAndOnlyThen)
{
    addFolder("loaded", "sub");
    addFolder("loaded/sub", "deep");
    run();
    EXPECT_EQ(loaded->retainCount(), 4u); // the test, both properties and the array

    load = makeRef<ZEFFileLoadOperation>();
    load->setRecursive(true);
    begin({ "loaded" });
    load->setFileFilter(makeRef<CancellingFilter>(*load, "deep"));
    run();
    EXPECT_EQ(loaded->retainCount(), 3u); // the test, the property and the table
    load->setFilesToIterate(nullptr);
    EXPECT_EQ(loaded->retainCount(), 2u);
}

TEST_F(ZEFFileLoadOperationWalkOrderTest, LogsNoErrorOfAReadInWhichItIsCancelled)
{
    addFolder("loaded", "sub");
    addFiles("loaded/sub", "c", 100);
    catalog.setReadResult(folder.folderUrl("loaded/sub"), zef::FileError::io, 40);
    cancelInRead(3);

    EXPECT_THAT(run(), SizeIs(41));
}

} // namespace
