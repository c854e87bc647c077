// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileTable.h"

#include "tests/support/FailingMutex.h"
#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

namespace {

int failuresLeft = 0;
int attempts = 0;

zef::Ref<ZEFFileItem> makeUnlessFailing(const zef::FileURL& url, const zef::FSRef* ref,
    const zef::FileURL& pathRep, const zef::Stat* stat)
{
    ++attempts;
    if (failuresLeft-- > 0)
        return nullptr;
    return zef::makeRef<ZEFFileItem>(url, ref, pathRep, stat);
}

// A class whose instances can't be made as often as a test says.
const ZEFFileItemClass failingClass(
    "FailingFileItem", &ZEFFileItem::classObject, makeUnlessFailing);

class ZEFFileRegistryTest : public FakeFileItemFixture {
protected:
    ZEFFileRegistryTest() { attempts = 0; }

    static ZEFFileTable* tableOfDevice(std::uint32_t device)
    {
        const ZEFFileRegistry::Guard guard;
        return ZEFFileRegistry::table(device);
    }

    // A device that no item was ever on; above the greatest signed number.
    static std::uint32_t newDevice()
    {
        static std::uint32_t last = 0xfedc0000;
        return ++last;
    }

    static zef::Ref<ZEFFileItem> itemAfterFailures(int failures, std::string_view path)
    {
        failuresLeft = failures;
        return failingClass.newFileItemForURL(url(path));
    }
};

TEST_F(ZEFFileRegistryTest, KeepsItemsByTheirNumbers)
{
    const auto stat = files.addFile("/file");
    const auto file = item("/file");

    EXPECT_EQ(ZEFFileRegistry::item(stat.device, stat.inode), file);
    EXPECT_FALSE(ZEFFileRegistry::item(stat.device, stat.inode + 1));
    EXPECT_FALSE(ZEFFileRegistry::item(stat.device + 1, stat.inode));
}

TEST_F(ZEFFileRegistryTest, KeepsItemsWeakly)
{
    const auto stat = files.addFile("/file");
    auto file = item("/file");
    EXPECT_EQ(file->retainCount(), 1u);

    file = nullptr;

    EXPECT_FALSE(ZEFFileRegistry::item(stat.device, stat.inode));
}

TEST_F(ZEFFileRegistryTest, MakesATableForADeviceOnce)
{
    const auto device = newDevice();
    auto stat = files.addFile("/file");
    stat.device = device;
    files.setStat("/file", stat);
    EXPECT_EQ(tableOfDevice(device), nullptr);

    const auto file = item("/file");
    auto* table = tableOfDevice(device);

    ASSERT_TRUE(table);
    EXPECT_EQ(file->ZEF_container(), table);
    EXPECT_EQ(table->count(), 1u);
    EXPECT_EQ(item("/file"), file);
    EXPECT_EQ(tableOfDevice(device), table);
}

TEST_F(ZEFFileRegistryTest, TellsAnItemItsTable)
{
    files.addFile("/one");
    files.addFile("/two");
    const auto one = item("/one");

    EXPECT_EQ(one->ZEF_container(), tableOfDevice(FakeFileSystem::deviceNumber));
    EXPECT_EQ(item("/two")->ZEF_container(), one->ZEF_container());
}

TEST_F(ZEFFileRegistryTest, DescribesItsItemsByTheCallback)
{
    files.addFile("/file");
    const auto file = item("/file");
    auto* table = tableOfDevice(FakeFileSystem::deviceNumber);

    EXPECT_EQ(ZEFFileMapDescriptionCallback(table, file.get()), file->description());
    EXPECT_EQ(ZEFFileMapDescriptionCallback(nullptr, file.get()), file->description());
    EXPECT_NE(table->description().find(file->description()), std::string::npos);
}

// --- The lock ------------------------------------------------------------------------------------

TEST_F(ZEFFileRegistryTest, YieldsNilWhenItCantBeLocked)
{
    const auto stat = files.addFile("/file");
    const auto file = item("/file");
    const FailingMutex mutex(EDEADLK, 0);

    EXPECT_FALSE(item("/file"));
    EXPECT_EQ(log.lines(), std::vector<std::string>{ "Error 35 locking filesLock" });
    EXPECT_FALSE(ZEFFileRegistry::item(stat.device, stat.inode));
}

TEST_F(ZEFFileRegistryTest, CarriesOnWhenItCantBeUnlocked)
{
    files.addFile("/file");
    const FailingMutex mutex(0, EPERM);

    const auto file = item("/file");

    ASSERT_TRUE(file);
    EXPECT_EQ(item("/file"), file);
    EXPECT_EQ(log.lines(),
        (std::vector<std::string>{ "Error 1 unlocking filesLock", "Error 1 unlocking filesLock" }));
}

TEST_F(ZEFFileRegistryTest, TakesNoLockWhereNothingIs)
{
    const FailingMutex mutex(EDEADLK, 0);

    EXPECT_FALSE(item("/missing"));
    EXPECT_FALSE(ZEFFileItem::classObject.newFileItemForURL(nullptr));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileRegistryTest, LetsAnItemDieWithoutTheLock)
{
    const auto stat = files.addFile("/file");
    auto file = item("/file");
    {
        const FailingMutex mutex(EDEADLK, 0);
        file = nullptr;
    }

    EXPECT_TRUE(log.lines().empty());
    EXPECT_FALSE(ZEFFileRegistry::item(stat.device, stat.inode));
}

// --- Instances that can't be made ----------------------------------------------------------------

TEST_F(ZEFFileRegistryTest, ForgetsADevicesItemsWhenAnInstanceCantBeMade)
{
    files.addFile("/one");
    files.addFile("/two");
    const auto one = item("/one");
    auto* former = tableOfDevice(FakeFileSystem::deviceNumber);

    EXPECT_FALSE(itemAfterFailures(2, "/two"));

    EXPECT_EQ(attempts, 2);
    EXPECT_NE(tableOfDevice(FakeFileSystem::deviceNumber), former);
    EXPECT_EQ(one->ZEF_container(), former);
    EXPECT_TRUE(one->isValid());
    EXPECT_NE(item("/one"), one);
}

TEST_F(ZEFFileRegistryTest, EntersAnInstanceThatCouldBeMadeAtTheSecondAttempt)
{
    files.addFile("/one");
    files.addFile("/two");
    const auto one = item("/one");

    const auto two = itemAfterFailures(1, "/two");

    ASSERT_TRUE(two);
    EXPECT_EQ(attempts, 2);
    EXPECT_EQ(two->ZEF_container(), tableOfDevice(FakeFileSystem::deviceNumber));
    EXPECT_NE(two->ZEF_container(), one->ZEF_container());
    EXPECT_EQ(item("/two"), two);
}

TEST_F(ZEFFileRegistryTest, TriesOnceWhereTheDeviceIsNew)
{
    auto stat = files.addFile("/file");
    stat.device = newDevice();
    files.setStat("/file", stat);

    EXPECT_FALSE(itemAfterFailures(5, "/file"));

    EXPECT_EQ(attempts, 1);
    ASSERT_TRUE(tableOfDevice(stat.device));
    EXPECT_EQ(tableOfDevice(stat.device)->count(), 0u);
}

TEST_F(ZEFFileRegistryTest, KeepsTheNewEntryWhenAForgottenItemDies)
{
    files.addFile("/one");
    files.addFile("/two");
    auto forgotten = item("/one");
    EXPECT_FALSE(itemAfterFailures(2, "/two"));
    const auto one = item("/one");

    forgotten = nullptr;

    EXPECT_EQ(item("/one"), one);
}

} // namespace
