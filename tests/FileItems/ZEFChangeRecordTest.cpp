// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFChangeRecord.h"

#include "tests/support/FakeFileItemFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class ZEFChangeRecordTest : public FakeFileItemFixture {
protected:
    ZEFChangeRecordTest()
    {
        files.addFile("/file");
        file = item("/file");
    }

    zef::Ref<ZEFFileItem> file;
};

TEST_F(ZEFChangeRecordTest, HoldsAnEventAndAFile)
{
    const auto record = zef::makeRef<ZEFChangeRecord>(ZEFFileEvent::renamed, file);

    EXPECT_EQ(record->event(), ZEFFileEvent::renamed);
    EXPECT_EQ(record->file(), file.get());
    EXPECT_EQ(record->count(), 2u);
}

TEST_F(ZEFChangeRecordTest, AnswersForItsTwoKeys)
{
    const auto record = zef::makeRef<ZEFChangeRecord>(ZEFFileEvent::appeared, file);

    EXPECT_EQ(record->objectForKey(ZEFFileEventKey), ZEFFileEventNumber(ZEFFileEvent::appeared));
    EXPECT_EQ(record->objectForKey(ZEFFileKey), file.get());
    EXPECT_EQ(record->objectForKey("ZEFFile"), nullptr);
    EXPECT_EQ(record->objectForKey(""), nullptr);
}

TEST_F(ZEFChangeRecordTest, KeepsItsFileAlive)
{
    auto record = zef::makeRef<ZEFChangeRecord>(ZEFFileEvent::removed, file);
    EXPECT_EQ(file->retainCount(), 2u);

    record = nullptr;

    EXPECT_EQ(file->retainCount(), 1u);
}

TEST_F(ZEFChangeRecordTest, DescribesBothEntries)
{
    const auto record = zef::makeRef<ZEFChangeRecord>(ZEFFileEvent::updated, file);

    EXPECT_EQ(record->description(),
        "{ ZEFFileEventKey = 8; ZEFFileKey = " + file->description() + "; }");
    const auto empty = zef::makeRef<ZEFChangeRecord>(ZEFFileEvent::moved, nullptr);
    EXPECT_EQ(empty->description(), "{ ZEFFileEventKey = 1; ZEFFileKey = (null); }");
}

} // namespace
