// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFLoadingOperation.h"

#include "tests/support/ReportingItem.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using zef::makeRef;
using zef::Ref;

class EmptyLoad final : public ZEFLoadingOperation {
protected:
    void main() override { }
};

class ZEFLoadingOperationTest : public testing::Test {
protected:
    Ref<ZEFFileItem> newItem() const
    {
        return ReportingItem::classObject.newFileItemForURL(folder.folderUrl());
    }

    TemporaryFolder folder;
    Ref<EmptyLoad> load = makeRef<EmptyLoad>();
};

TEST_F(ZEFLoadingOperationTest, BeginsWithAnEmptyArrayAndAFreeLockOfItsOwn)
{
    auto other = makeRef<EmptyLoad>();

    EXPECT_TRUE(load->loadingArray()->isEmpty());
    EXPECT_NE(load->loadingArray(), other->loadingArray());
    EXPECT_NE(load->loadingArrayLock(), other->loadingArrayLock());
    ASSERT_TRUE(load->loadingArrayLock()->tryLock());
    load->loadingArrayLock()->unlock();
}

TEST_F(ZEFLoadingOperationTest, IsAnOperation)
{
    EXPECT_TRUE(load->isKindOfClass(ZEFLoadingOperation::classObject));
    EXPECT_TRUE(load->isKindOfClass(zef::Operation::classObject));
}

TEST_F(ZEFLoadingOperationTest, ItsArrayKeepsItemsAlive)
{
    const int before = ReportingItem::liveCount;
    load->loadingArray()->addObject(newItem());

    EXPECT_EQ(ReportingItem::liveCount, before + 1);

    load = nullptr;
    EXPECT_EQ(ReportingItem::liveCount, before);
}

TEST_F(ZEFLoadingOperationTest, LeavesItsArrayToWhoeverRetainsIt)
{
    const Ref<ZEFFileItemArray> array = load->loadingArray();
    array->addObject(newItem());

    load = nullptr;

    EXPECT_EQ(array->count(), 1u);
}

} // namespace
