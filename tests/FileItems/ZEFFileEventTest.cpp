// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileEvent.h"

#include <gtest/gtest.h>

namespace {

TEST(ZEFFileEventTest, GivesEachEventItsNumber)
{
    EXPECT_EQ(static_cast<int>(ZEFFileEvent::moved), 1);
    EXPECT_EQ(static_cast<int>(ZEFFileEvent::renamed), 2);
    EXPECT_EQ(static_cast<int>(ZEFFileEvent::removed), 4);
    EXPECT_EQ(static_cast<int>(ZEFFileEvent::updated), 8);
    EXPECT_EQ(static_cast<int>(ZEFFileEvent::appeared), 16);
    EXPECT_EQ(static_cast<int>(ZEFFileEvent::movedInParent), 32);
}

TEST(ZEFFileEventTest, HasOneNumberObjectForEachEvent)
{
    for (const auto event : { ZEFFileEvent::moved, ZEFFileEvent::renamed, ZEFFileEvent::removed,
             ZEFFileEvent::updated, ZEFFileEvent::appeared, ZEFFileEvent::movedInParent }) {
        const auto* number = ZEFFileEventNumber(event);
        ASSERT_TRUE(number);
        EXPECT_EQ(number->intValue(), static_cast<int>(event));
        EXPECT_EQ(ZEFFileEventNumber(event), number);
    }
}

TEST(ZEFFileEventTest, HasNoNumberObjectForWhatIsNoEvent)
{
    EXPECT_EQ(ZEFFileEventNumber(static_cast<ZEFFileEvent>(3)), nullptr);
}

TEST(ZEFFileEventTest, NamesKeysAndEventsAfterThemselves)
{
    EXPECT_STREQ(ZEFFileEventKey, "ZEFFileEventKey");
    EXPECT_STREQ(ZEFFileKey, "ZEFFileKey");
    EXPECT_STREQ(ZEFFileMovedEvent, "ZEFFileMovedEvent");
    EXPECT_STREQ(ZEFFileRenamedEvent, "ZEFFileRenamedEvent");
    EXPECT_STREQ(ZEFFileRemovedEvent, "ZEFFileRemovedEvent");
    EXPECT_STREQ(ZEFFileUpdatedEvent, "ZEFFileUpdatedEvent");
    EXPECT_STREQ(ZEFFileAppearedEvent, "ZEFFileAppearedEvent");
    EXPECT_STREQ(ZEFFileMovedInParentEvent, "ZEFFileMovedInParentEvent");
}

} // namespace
