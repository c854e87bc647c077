// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileFilter.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

TEST(ZEFFileFilterTest, TakesEveryFileAndNil)
{
    TemporaryFolder folder;
    const auto file = ZEFFileItem::classObject.newFileItemForURL(folder.write(".hidden"));
    const auto filter = ZEFFileFilter::filter();

    EXPECT_TRUE(filter->shouldIncludeFile(file.get()));
    EXPECT_TRUE(filter->shouldIncludeFile(nullptr));
}

TEST(ZEFFileFilterTest, IsANewOneEachTime)
{
    const auto filter = ZEFFileFilter::filter();

    EXPECT_NE(filter, ZEFFileFilter::filter());
    EXPECT_EQ(filter->retainCount(), 1u);
    EXPECT_EQ(&filter->objectClass(), &ZEFFileFilter::classObject);
}

} // namespace
