// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileItemFixture.h"
#include "tests/support/RecordingFileItem.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Events = std::vector<ZEFFileEvent>;

// What items make of a change for those who override `updateForEvent`.
class ZEFFileItemEventTest : public FakeFileItemFixture {
protected:
    ZEFFileItemEventTest()
    {
        files.addFolder("/folder");
        files.addFile("/folder/file");
        _item = RecordingFileItem::classObject.newFileItemForURL(url("/folder/file"));
        file().registerFileObserver(observer.get());
        file().registerFileObserver(other.get());
    }

    RecordingFileItem& file() { return static_cast<RecordingFileItem&>(*_item.get()); }

    bool update() { return file().updateForObserver(observer.get()); }

private:
    zef::Ref<ZEFFileItem> _item;
};

TEST_F(ZEFFileItemEventTest, DeliversNothingWhenNothingHappened)
{
    EXPECT_FALSE(update());
    EXPECT_TRUE(file().events.empty());
}

TEST_F(ZEFFileItemEventTest, DeliversAnUpdateForAWrite)
{
    files.write("/folder/file");

    EXPECT_TRUE(update());
    EXPECT_EQ(file().events, Events{ ZEFFileEvent::updated });
    EXPECT_EQ(file().files, std::vector<const ZEFFileItem*>{ &file() });
    EXPECT_FALSE(update());
}

TEST_F(ZEFFileItemEventTest, DeliversARenameInTheSameFolder)
{
    move("/folder/file", "/folder/renamed");

    EXPECT_TRUE(update());
    EXPECT_EQ(file().events, Events{ ZEFFileEvent::renamed });
    EXPECT_EQ(file().url(), url("/folder/renamed"));
}

TEST_F(ZEFFileItemEventTest, DeliversAMoveToAnotherFolder)
{
    move("/folder/file", "/file");

    EXPECT_TRUE(update());
    EXPECT_EQ(file().events, Events{ ZEFFileEvent::moved });
}

TEST_F(ZEFFileItemEventTest, DeliversAMoveWhenTheFolderIsRenamed)
{
    locator.setPlace(ref("/folder/file"), url("/other/file"));
    files.rename("/folder", "/other");

    EXPECT_TRUE(update());
    EXPECT_EQ(file().events, Events{ ZEFFileEvent::moved });
}

TEST_F(ZEFFileItemEventTest, DeliversTheRemovalOfALostFile)
{
    files.remove("/folder/file");

    EXPECT_TRUE(update());
    EXPECT_EQ(file().events, Events{ ZEFFileEvent::removed });
    EXPECT_EQ(file().files, std::vector<const ZEFFileItem*>{ &file() });
    EXPECT_FALSE(file().isValid());
}

TEST_F(ZEFFileItemEventTest, DeliversARenameBeforeAnUpdate)
{
    files.write("/folder/file");
    move("/folder/file", "/folder/renamed");

    EXPECT_TRUE(update());
    EXPECT_TRUE(update());
    EXPECT_EQ(file().events, (Events{ ZEFFileEvent::renamed, ZEFFileEvent::updated }));
}

TEST_F(ZEFFileItemEventTest, DeliversWhatEachObserverFindsOutByItself)
{
    move("/folder/file", "/folder/renamed");

    EXPECT_TRUE(update());
    EXPECT_TRUE(file().updateForObserver(other.get()));
    EXPECT_EQ(file().events, (Events{ ZEFFileEvent::renamed, ZEFFileEvent::renamed }));
}

TEST_F(ZEFFileItemEventTest, DeliversALossToEachObserver)
{
    files.remove("/folder/file");

    EXPECT_TRUE(update());
    EXPECT_TRUE(file().updateForObserver(other.get()));
    EXPECT_EQ(file().events, (Events{ ZEFFileEvent::removed, ZEFFileEvent::removed }));
    EXPECT_FALSE(update());
    EXPECT_FALSE(file().updateForObserver(other.get()));
}

TEST_F(ZEFFileItemEventTest, ComparesFoldersWithoutRegardToTheMarkOfTheURL)
{
    files.addFolder("/folder/subfolder");
    const auto folder = RecordingFileItem::classObject.newFileItemForURL(url("/folder/subfolder"));
    folder->registerFileObserver(observer.get());
    locator.setPlace(ref("/folder/subfolder"), folderURL("/folder/renamed"));
    files.rename("/folder/subfolder", "/folder/renamed");

    EXPECT_TRUE(folder->updateForObserver(observer.get()));
    EXPECT_EQ(
        static_cast<RecordingFileItem&>(*folder.get()).events, Events{ ZEFFileEvent::renamed });
}

TEST_F(ZEFFileItemEventTest, DeliversNothingForAStranger)
{
    const auto stranger = zef::makeRef<Observer>();
    files.write("/folder/file");

    EXPECT_FALSE(file().updateForObserver(stranger.get()));
    EXPECT_TRUE(file().events.empty());
    EXPECT_TRUE(file().registerFileObserver(stranger.get()));
}

TEST_F(ZEFFileItemEventTest, DeliversNothingToAnObserverThatRegisteredAfterTheLoss)
{
    const auto late = zef::makeRef<Observer>();
    files.remove("/folder/file");
    file().currentURL();
    file().registerFileObserver(late.get());

    EXPECT_FALSE(file().updateForObserver(late.get()));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ZEFFileItemEventTest, PassesOnTheVeryRecordOfAnEvent)
{
    const auto record = zef::makeRef<ZEFChangeRecord>(
        ZEFFileEvent::movedInParent, zef::Ref<ZEFFileItem>(&file()));

    file().eventOccurred(record.get());

    EXPECT_EQ(file().records, std::vector<const ZEFChangeRecord*>{ record.get() });
    EXPECT_EQ(file().events, Events{ ZEFFileEvent::movedInParent });
}

TEST_F(ZEFFileItemEventTest, DoesNothingWithAnEventByItself)
{
    files.addFile("/plain");
    const auto plain = item("/plain");
    const auto record = zef::makeRef<ZEFChangeRecord>(ZEFFileEvent::updated, plain);
    const auto before = plain->description();

    plain->eventOccurred(record.get());
    plain->updateForEvent(nullptr);

    EXPECT_EQ(plain->description(), before);
}

// The record keeps the item alive even when the observer lets it go in the meantime.
TEST_F(ZEFFileItemEventTest, LivesWhileItDeliversAnEvent)
{
    static zef::Ref<ZEFFileItem> lastReference;
    struct LettingGo {
        static zef::Ref<ZEFFileItem> make(const zef::FileURL& where, const zef::FSRef* ref,
            const zef::FileURL& pathRep, const zef::Stat* stat)
        {
            class Item final : public ZEFFileItem {
            public:
                using ZEFFileItem::ZEFFileItem;
                void updateForEvent(const ZEFChangeRecord*) override
                {
                    lastReference = nullptr;
                    EXPECT_TRUE(isValid());
                }
            };
            return zef::makeRef<Item>(where, ref, pathRep, stat);
        }
    };
    static const ZEFFileItemClass lettingGo(
        "LettingGo", &ZEFFileItem::classObject, LettingGo::make);
    files.addFile("/file");
    lastReference = lettingGo.newFileItemForURL(url("/file"));
    lastReference->registerFileObserver(observer.get());
    files.write("/file");

    EXPECT_TRUE(lastReference->updateForObserver(observer.get()));
    EXPECT_FALSE(lastReference);
}

} // namespace
