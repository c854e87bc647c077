// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileNumbers.h"

#include "tests/support/FakeFileItemFixture.h"
#include "tests/support/RecordingFileItem.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <string>

namespace {

class ZEFFileItemTest : public FakeFileItemFixture {
protected:
    zef::Ref<ZEFFileItem> itemWithMode(std::uint32_t mode)
    {
        auto stat = files.addFile("/object");
        stat.mode = mode;
        files.setStat("/object", stat);
        return item("/object");
    }
};

// --- Identity -----------------------------------------------------------------------------------

TEST_F(ZEFFileItemTest, HasTheNumbersOfItsObject)
{
    const auto stat = files.addFile("/file");
    const auto file = item("/file");

    EXPECT_EQ(file->fileDeviceNumber(), stat.device);
    EXPECT_EQ(file->fileiNode(), stat.inode);
    EXPECT_EQ(file->fileiNodeHash(), (stat.inode << 16) | (stat.inode >> 16));
    EXPECT_EQ(file->hash(), ((stat.inode << 16) | (stat.inode >> 16)) ^ stat.device);
}

TEST_F(ZEFFileItemTest, HoldsInodeNumbersOf64Bits)
{
    files.setNextInode(0x8000000680000081);
    const auto stat = files.addFile("/file");
    const auto file = item("/file");

    EXPECT_EQ(file->fileiNode(), 0x8000000680000081);
    EXPECT_EQ(file->fileiNodeHash(), zef::registryKeyOfInode(stat.inode));
    EXPECT_EQ(file->hash(), zef::hashOfFile(stat.inode, stat.device));
    EXPECT_LE(file->hash(), 0xffffffffu);
}

TEST_F(ZEFFileItemTest, IsEqualToAnotherItemOfItsClassWithTheSameNumbers)
{
    files.addFile("/file");
    files.addFile("/another");
    const auto one = unregistered(url("/file"));
    const auto twin = unregistered(url("/file"));
    const auto another = unregistered(url("/another"));

    EXPECT_TRUE(one->isEqual(one.get()));
    EXPECT_TRUE(one->isEqual(twin.get()));
    EXPECT_EQ(one->hash(), twin->hash());
    EXPECT_FALSE(one->isEqual(another.get()));
}

TEST_F(ZEFFileItemTest, IsNotEqualToAnItemOnAnotherDevice)
{
    files.addFile("/file");
    auto stat = files.addFile("/another");
    stat.inode = this->stat("/file").inode;
    stat.device += 1;
    files.setStat("/another", stat);

    EXPECT_FALSE(unregistered(url("/file"))->isEqual(unregistered(url("/another")).get()));
}

TEST_F(ZEFFileItemTest, IsNotEqualToNilOrToAnythingElse)
{
    files.addFile("/file");
    const auto file = item("/file");

    EXPECT_FALSE(file->isEqual(nullptr));
    EXPECT_FALSE(file->isEqual(observer.get()));
}

TEST_F(ZEFFileItemTest, IsEqualToAnItemOfASubclassButNotTheOtherWayRound)
{
    files.addFile("/file");
    const auto plain = unregistered(url("/file"));
    const auto special = unregistered<RecordingFileItem>(url("/file"));

    EXPECT_TRUE(plain->isEqual(special.get()));
    EXPECT_FALSE(special->isEqual(plain.get()));
    EXPECT_TRUE(special->isEqual(unregistered<RecordingFileItem>(url("/file")).get()));
}

TEST_F(ZEFFileItemTest, IsItsOwnCopy)
{
    files.addFile("/file");
    const auto file = item("/file");
    const auto count = file->retainCount();

    const auto copy = file->copy();

    EXPECT_EQ(copy.get(), file.get());
    EXPECT_EQ(file->retainCount(), count + 1);
}

TEST_F(ZEFFileItemTest, KnowsItsClass)
{
    files.addFile("/file");
    const auto plain = item("/file");
    const auto special = unregistered<RecordingFileItem>(url("/file"));

    EXPECT_TRUE(plain->isKindOfClass(ZEFFileItem::classObject));
    EXPECT_TRUE(plain->isKindOfClass(ZEFObject::classObject));
    EXPECT_FALSE(plain->isKindOfClass(RecordingFileItem::classObject));
    EXPECT_TRUE(special->isKindOfClass(ZEFFileItem::classObject));
    EXPECT_EQ(&special->objectClass(), &RecordingFileItem::classObject);
}

// --- Kinds, by the mode bits as they were
// ---------------------------------------------------------

TEST_F(ZEFFileItemTest, TellsFoldersAndLinksByModeBitsAlone)
{
    struct {
        std::uint32_t mode;
        bool isBasicDirectory;
        bool isSymlink;
    } const kinds[] = {
        { 0100644, false, false }, { 0040755, true, false }, { 0120777, false, true },
        { 0140755, true, false }, // a socket
        { 0060660, true, false }, // a block device
        { 0010644, false, false }, // a pipe
        { 0160000, true, true }, // a whiteout
    };
    for (const auto& kind : kinds) {
        const auto object = itemWithMode(kind.mode);
        EXPECT_EQ(object->isBasicDirectory(), kind.isBasicDirectory) << std::oct << kind.mode;
        EXPECT_EQ(object->isSymlink(), kind.isSymlink) << std::oct << kind.mode;
        files.remove("/object");
    }
}

TEST_F(ZEFFileItemTest, KeepsItsKindForLife)
{
    const auto object = itemWithMode(0040755);
    auto stat = this->stat("/object");
    stat.mode = 0100644;
    stat.modificationTime.tv_sec += 1;
    files.setStat("/object", stat);

    object->changesForObserver(observer.get());
    object->currentModificationDate();

    EXPECT_TRUE(object->isBasicDirectory());
}

// --- Descriptions --------------------------------------------------------------------------------

TEST_F(ZEFFileItemTest, DescribesItself)
{
    files.setNextInode(0x00012345);
    files.addFolder("/a folder");
    const auto folder = item("/a folder");
    const auto hash = std::to_string(static_cast<int>(folder->hash()));

    EXPECT_EQ(folder->description(),
        folder->ZEFObject::description() + ", URL: file:///a%20folder/, hash: " + hash
            + ", isBasicDir: 1, refValid: 1, isSymlink: 0");
    EXPECT_TRUE(folder->description().starts_with("<ZEFFileItem: 0x"));
}

TEST_F(ZEFFileItemTest, DescribesItsHashAsASignedNumber)
{
    files.setNextInode(0x8000);
    files.addFile("/file");
    const auto file = item("/file");

    EXPECT_GE(file->hash(), 0x80000000u);
    EXPECT_NE(file->description().find(", hash: -2"), std::string::npos) << file->description();
}

TEST_F(ZEFFileItemTest, DescribesALostLinkWithoutItsURL)
{
    files.addLink("/link", "/nowhere");
    const auto link = unregistered<RecordingFileItem>(url("/link"));
    files.remove("/link");
    link->currentURL();

    EXPECT_TRUE(link->description().starts_with("<RecordingFileItem: 0x"));
    EXPECT_TRUE(link->description().ends_with("isBasicDir: 0, refValid: 0, isSymlink: 1"));
    EXPECT_NE(link->description().find(", URL: (null), hash: "), std::string::npos);
}

// --- As last seen --------------------------------------------------------------------------------

TEST_F(ZEFFileItemTest, TellsWhatItLastSawWithoutAskingTheDisk)
{
    files.addFile("/file");
    const auto file = item("/file");
    files.remove("/file");
    const auto questions = files.statCount() + files.existsCount() + files.handleCount();

    EXPECT_TRUE(file->isValid());
    EXPECT_EQ(file->url(), url("/file"));
    EXPECT_EQ(*file->path(), "/file");
    EXPECT_STREQ(file->filesystemRepresentation().get(), "/file");
    EXPECT_TRUE(file->fsRef());
    EXPECT_TRUE(file->modificationDate());
    EXPECT_EQ(files.statCount() + files.existsCount() + files.handleCount(), questions);
    EXPECT_EQ(locator.locateCount(), 0);
}

TEST_F(ZEFFileItemTest, MakesItsPathOnce)
{
    files.addFile("/file");
    const auto file = item("/file");

    EXPECT_EQ(file->path(), file->path());
}

TEST_F(ZEFFileItemTest, GivesItsPathWithoutTheSlashOfItsURL)
{
    files.addFolder("/folder");
    const auto folder = item("/folder");

    EXPECT_EQ(folder->url(), folderURL("/folder"));
    EXPECT_EQ(*folder->path(), "/folder");
    EXPECT_STREQ(folder->filesystemRepresentation().get(), "/folder");
}

TEST_F(ZEFFileItemTest, TellsNothingOnceItIsLost)
{
    files.addFile("/file");
    const auto file = item("/file");
    file->path();
    files.remove("/file");
    file->currentURL();

    EXPECT_FALSE(file->isValid());
    EXPECT_FALSE(file->url());
    EXPECT_EQ(file->path(), nullptr);
    EXPECT_EQ(file->filesystemRepresentation(), nullptr);
    EXPECT_EQ(file->fsRef(), nullptr);
    EXPECT_FALSE(file->refValid());
}

TEST_F(ZEFFileItemTest, GivesACopyOfItsRepresentationToFree)
{
    files.addFile("/file");
    const auto file = item("/file");
    auto first = file->filesystemRepresentation();
    first.get()[1] = 'x';

    char* second = file->filesystemRepresentation().release();

    EXPECT_STREQ(second, "/file");
    std::free(second);
}

TEST_F(ZEFFileItemTest, HasNoRepresentationForAPathThatIsTooLong)
{
    files.addFile("/file");
    const auto file = item("/file");
    locator.setPlace(ref("/file"), url("/" + std::string(PATH_MAX, 'n')));
    files.rename("/file", "/hidden");

    EXPECT_EQ(file->currentURL().path().size(), std::size_t{ PATH_MAX } + 1);
    EXPECT_EQ(file->filesystemRepresentation(), nullptr);
    EXPECT_EQ(file->currentFilesystemRepresentation(), nullptr);
    EXPECT_TRUE(file->isValid());
    EXPECT_EQ(file->path()->size(), std::size_t{ PATH_MAX } + 1);
}

} // namespace
