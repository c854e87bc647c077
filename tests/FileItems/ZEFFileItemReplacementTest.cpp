// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// What the factory does with a registered item that no longer serves.
class ZEFFileItemReplacementTest : public FakeFileItemFixture {
protected:
    static std::string replacementMessage(const ZEFFileItem& old, const zef::FileURL& url)
    {
        return "Error while getting file object " + old.description() + " for url "
            + url.absoluteString() + ", will attempt to create a new one.";
    }
};

TEST_F(ZEFFileItemReplacementTest, ReplacesAnItemThatWasLost)
{
    files.addFile("/file");
    const auto old = item("/file");
    hide("/file", "/hidden");
    old->currentURL();
    const auto message = replacementMessage(*old, url("/hidden"));

    const auto young = item("/hidden");

    EXPECT_NE(young, old);
    EXPECT_TRUE(young->isValid());
    EXPECT_EQ(log.lines(), std::vector<std::string>{ message });
    EXPECT_EQ(item("/hidden"), young);
}

TEST_F(ZEFFileItemReplacementTest, LetsAReplacedItemTakeItsSuccessorOutWhenItDies)
{
    files.addFile("/file");
    auto old = item("/file");
    hide("/file", "/hidden");
    old->currentURL();
    const auto young = item("/hidden");
    EXPECT_TRUE(old->ZEF_container());

    old = nullptr;

    EXPECT_NE(item("/hidden"), young);
}

TEST_F(ZEFFileItemReplacementTest, ReplacesTheItemOfADeletedFileWhoseNumberCameBack)
{
    const auto stat = files.addFile("/file");
    const auto old = item("/file");
    files.remove("/file");
    files.setNextInode(stat.inode);
    files.addFile("/young");

    const auto young = item("/young");

    EXPECT_NE(young, old);
    EXPECT_TRUE(old->isValid());
    EXPECT_EQ(old->ZEF_container(), nullptr);
    EXPECT_EQ(log.lines(), std::vector<std::string>{ replacementMessage(*old, url("/young")) });
}

TEST_F(ZEFFileItemReplacementTest, KeepsTheItemOfANumberThatCameBackWhenTheFormerOneDies)
{
    const auto stat = files.addFile("/file");
    auto old = item("/file");
    files.remove("/file");
    files.setNextInode(stat.inode);
    files.addFile("/file");
    const auto young = item("/file");

    old = nullptr;

    EXPECT_EQ(item("/file"), young);
}

TEST_F(ZEFFileItemReplacementTest, KeepsTheItemOfANumberThatCameBackWhenTheFormerOneWasLostBefore)
{
    const auto stat = files.addFile("/file");
    auto old = item("/file");
    files.remove("/file");
    old->currentURL();
    files.setNextInode(stat.inode);
    files.addFile("/file");
    const auto young = item("/file");
    EXPECT_EQ(old->ZEF_container(), nullptr);

    old = nullptr;

    EXPECT_EQ(item("/file"), young);
}

TEST_F(ZEFFileItemReplacementTest, KeepsTheItemOfANumberThatCameBackWhenAFormerOnesReplacedItemDies)
{
    const auto stat = files.addFile("/file");
    auto lost = item("/file");
    hide("/file", "/hidden");
    lost->currentURL();
    const auto replacing = item("/hidden");
    files.remove("/hidden");
    files.setNextInode(stat.inode);
    files.addFile("/young");
    const auto young = item("/young");

    lost = nullptr;

    EXPECT_EQ(item("/young"), young);
}

TEST_F(ZEFFileItemReplacementTest, KeepsTheItemOfANumberThatCameBackAfterAnOlderLook)
{
    const auto old = files.addFile("/file");
    files.remove("/file");
    files.setNextInode(old.inode);
    files.addFile("/young");
    const auto young = item("/young");

    const auto made = ZEFFileItem::classObject.ZEF_newFileItemForEntry(
        url("/file"), zef::FSRef(old), old);

    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(item("/young"), young);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemReplacementTest, KeepsAnItemWhoseFileWasCopiedUpToAnotherLayer)
{
    auto stat = files.addFile("/file");
    auto reference = zef::FSRef(stat);
    reference.setHandle(files.handle("/file"));
    const auto file = ZEFFileItem::classObject.newFileItemForURLFsRef(url("/file"), &reference);
    stat.birthTime += 5;
    files.setStat("/file", stat);

    EXPECT_EQ(item("/file"), file);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemReplacementTest, LogsTheReplacementWithTheRegistryUnlocked)
{
    files.addFile("/file");
    const auto old = item("/file");
    hide("/file", "/hidden");
    old->currentURL();
    zef::Ref<ZEFFileItem> made;
    // A sink that asks for items must not wait for itself.
    const auto former = zef::setLogSink([&](std::string_view) { made = item("/hidden"); });

    const auto young = item("/hidden");

    zef::setLogSink(former);
    EXPECT_EQ(made, young);
}

} // namespace
