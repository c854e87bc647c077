// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

namespace {

// How an item is made and how it ends.
class ZEFFileItemLifeTest : public FakeFileItemFixture { };

TEST_F(ZEFFileItemLifeTest, LooksForItselfWhenItIsToldNothing)
{
    const auto stat = files.addFile("/file");
    const auto file = unregistered(url("/file"));

    EXPECT_TRUE(file->isValid());
    EXPECT_EQ(file->fileiNode(), stat.inode);
    EXPECT_EQ(file->url(), url("/file"));
    EXPECT_TRUE(file->refValid());
    EXPECT_EQ(file->fsRef()->inode(), stat.inode);
    EXPECT_FALSE(file->usingKQueue());
}

TEST_F(ZEFFileItemLifeTest, TakesTheStatThatItIsGivenAndLooksNoMore)
{
    auto stat = files.addFile("/file");
    stat.inode = 4711;
    const auto questions = files.statCount();

    const auto file = unregistered(url("/file"), nullptr, nullptr, &stat);

    EXPECT_EQ(file->fileiNode(), 4711u);
    EXPECT_TRUE(file->isValid());
    EXPECT_EQ(files.statCount(), questions);
}

TEST_F(ZEFFileItemLifeTest, LooksAtThePathThatItIsGivenRatherThanAtItsURL)
{
    const auto stat = files.addFile("/file");
    const auto file = unregistered(url("/missing"), nullptr, url("/file"));

    EXPECT_TRUE(file->isValid());
    EXPECT_EQ(file->fileiNode(), stat.inode);
    EXPECT_EQ(file->url(), url("/missing"));
    EXPECT_STREQ(file->filesystemRepresentation().get(), "/file");
}

TEST_F(ZEFFileItemLifeTest, IsNotValidWhereNothingIs)
{
    const auto file = unregistered(url("/missing"));

    EXPECT_FALSE(file->isValid());
    EXPECT_EQ(file->fileDeviceNumber(), 0u);
    EXPECT_EQ(file->fileiNode(), 0u);
    EXPECT_EQ(file->hash(), 0u);
    EXPECT_FALSE(file->refValid());
    EXPECT_FALSE(file->isBasicDirectory());
    EXPECT_EQ(file->url(), url("/missing"));
    EXPECT_EQ(file->path(), nullptr);
    EXPECT_EQ(file->filesystemRepresentation(), nullptr);
}

TEST_F(ZEFFileItemLifeTest, DropsTheURLOfNothingWhenAskedWhereItIs)
{
    const auto file = unregistered(url("/missing"));

    EXPECT_FALSE(file->currentURL());
    EXPECT_FALSE(file->url());
    EXPECT_FALSE(file->currentURL());
}

TEST_F(ZEFFileItemLifeTest, CopiesTheReferenceThatItIsGiven)
{
    files.addFile("/file");
    const auto given = zef::FSRef(files.addFile("/another"), 99);

    const auto file = unregistered(url("/file"), &given);

    ASSERT_TRUE(file->fsRef());
    EXPECT_NE(file->fsRef(), &given);
    EXPECT_EQ(file->fsRef()->inode(), given.inode());
    EXPECT_EQ(file->fsRef()->parentInode(), 99u);
}

TEST_F(ZEFFileItemLifeTest, DoesWithoutAReferenceWhereThereIsNone)
{
    files.addFile("/file");
    locator.setRefusesReferences(true);

    const auto file = item("/file");

    ASSERT_TRUE(file);
    EXPECT_TRUE(file->isValid());
    EXPECT_FALSE(file->refValid());
    EXPECT_EQ(file->fsRef(), nullptr);
    EXPECT_NE(file->description().find("refValid: 0"), std::string::npos);
}

TEST_F(ZEFFileItemLifeTest, StaysOutOfTheRegistryUnlessTheFactoryMadeIt)
{
    files.addFile("/file");
    const auto one = unregistered(url("/file"));

    EXPECT_EQ(one->ZEF_container(), nullptr);
    const auto registered = item("/file");
    EXPECT_NE(registered.get(), one.get());
    EXPECT_NE(registered->ZEF_container(), nullptr);
}

// --- Its end -------------------------------------------------------------------------------------

TEST_F(ZEFFileItemLifeTest, EndsItsKernelQueueAndGivesUpItsReferenceAtItsEnd)
{
    const auto stat = files.addFile("/file");
    const zef::FSRef ref(stat);
    auto file = item("/file");
    file->initKQueue();
    file->registerFileObserver(observer.get());
    EXPECT_EQ(notifier.openTokenCount(ref), 1u);
    EXPECT_EQ(locator.uses(ref), 1);

    file = nullptr;

    EXPECT_EQ(notifier.openTokenCount(ref), 0u);
    EXPECT_EQ(locator.uses(ref), 0);
    EXPECT_EQ(observer->retainCount(), 1u);
}

TEST_F(ZEFFileItemLifeTest, GivesUpItsReferenceOnceWhenItIsLost)
{
    const zef::FSRef ref(files.addFile("/file"));
    auto file = item("/file");
    files.remove("/file");
    file->currentURL();
    EXPECT_EQ(locator.uses(ref), 0);

    file->currentURL();
    file->changesForObserver(observer.get());
    file = nullptr;

    EXPECT_EQ(locator.uses(ref), 0);
}

TEST_F(ZEFFileItemLifeTest, GivesUpItsReferenceOnceWhenItIsLostWhileItIsTaken)
{
    const auto stat = files.addFile("/file");
    const zef::FSRef ref(stat);
    auto file = ZEFFileItem::classObject.ZEF_newFileItemForEntry(url("/file"), ref, stat);
    files.remove("/file");
    locator.setBeforeRetain([&] { file->currentURL(); });

    file->ZEF_keepReference();

    EXPECT_FALSE(file->isValid());
    EXPECT_EQ(locator.uses(ref), 0);
    file = nullptr;
    EXPECT_EQ(locator.uses(ref), 0);
}

TEST_F(ZEFFileItemLifeTest, TakesItsReferenceOnceWhenTwoTakeItAtTheSameTime)
{
    const auto stat = files.addFile("/file");
    const zef::FSRef ref(stat);
    auto file = ZEFFileItem::classObject.ZEF_newFileItemForEntry(url("/file"), ref, stat);
    locator.setBeforeRetain([&] {
        locator.setBeforeRetain(nullptr);
        file->ZEF_keepReference();
    });

    file->ZEF_keepReference();

    EXPECT_EQ(locator.uses(ref), 1);
    file = nullptr;
    EXPECT_EQ(locator.uses(ref), 0);
}

TEST_F(ZEFFileItemLifeTest, TakesNoReferenceOnceItIsLost)
{
    const auto stat = files.addFile("/file");
    const zef::FSRef ref(stat);
    const auto file = ZEFFileItem::classObject.ZEF_newFileItemForEntry(url("/file"), ref, stat);
    files.remove("/file");
    file->currentURL();

    file->ZEF_keepReference();
    file->registerFileObserver(observer.get());

    EXPECT_EQ(locator.uses(ref), 0);
}

} // namespace
