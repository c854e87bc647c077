// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Objects/Ref.h"

#include "ZEFFilesystemTools/Platform/Objects/LetOutlive.h"

#include "tests/support/CountedObject.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using zef::makeRef;
using zef::Ref;

TEST(RefTest, IsEmptyAtFirst)
{
    Ref<CountedObject> empty;
    Ref<CountedObject> nil = nullptr;

    EXPECT_FALSE(empty);
    EXPECT_FALSE(nil);
    EXPECT_EQ(empty.get(), nullptr);
    EXPECT_EQ(empty, nil);
}

TEST(RefTest, MakeRefOwnsTheFirstReference)
{
    auto object = makeRef<CountedObject>();

    EXPECT_EQ(object->retainCount(), 1u);
}

TEST(RefTest, CopyingRetainsAndDestroyingReleases)
{
    auto object = makeRef<CountedObject>();
    {
        Ref<CountedObject> copy;
        copy = object;
        EXPECT_EQ(object->retainCount(), 2u);
        EXPECT_EQ(copy, object);
    }

    EXPECT_EQ(object->retainCount(), 1u);
}

TEST(RefTest, MovingHandsTheReferenceOver)
{
    auto object = makeRef<CountedObject>();
    auto* borrowed = object.get();

    auto moved = std::move(object);

    EXPECT_FALSE(object); // NOLINT(bugprone-use-after-move): emptiness is what moving promises
    EXPECT_EQ(moved.get(), borrowed);
    EXPECT_EQ(moved->retainCount(), 1u);
}

TEST(RefTest, ARawPointerIsRetained)
{
    auto object = makeRef<CountedObject>();

    Ref<CountedObject> second(object.get());

    EXPECT_EQ(object->retainCount(), 2u);
}

TEST(RefTest, AdoptTakesOverAndLeakGivesAway)
{
    auto object = makeRef<CountedObject>();

    auto* leaked = object.leak();
    EXPECT_FALSE(object);
    EXPECT_EQ(leaked->retainCount(), 1u);
    auto adopted = Ref<CountedObject>::adopt(leaked);

    EXPECT_EQ(adopted->retainCount(), 1u);
}

TEST(RefTest, TheLastReferenceFreesTheObject)
{
    const auto before = CountedObject::liveCount();
    auto object = makeRef<CountedObject>();
    EXPECT_EQ(CountedObject::liveCount(), before + 1);

    object = nullptr;

    EXPECT_EQ(CountedObject::liveCount(), before);
}

TEST(RefTest, AssigningItselfKeepsTheObject)
{
    auto object = makeRef<CountedObject>();
    auto& alias = object;

    object = alias;

    EXPECT_EQ(object->retainCount(), 1u);
}

TEST(RefTest, ConvertsToTheSuperclass)
{
    auto object = makeRef<CountedObject>();

    Ref<ZEFObject> copied = object;
    EXPECT_EQ(object->retainCount(), 2u);
    Ref<ZEFObject> moved = std::move(object);

    EXPECT_EQ(moved, copied);
    EXPECT_EQ(moved->retainCount(), 2u);
}

TEST(RefTest, ComparesByIdentity)
{
    auto first = makeRef<CountedObject>();
    auto second = makeRef<CountedObject>();

    EXPECT_NE(first, second);
    EXPECT_EQ(first, first.get());
    EXPECT_NE(first, second.get());
}

TEST(LetOutliveTest, GivesOneMoreReferenceAway)
{
    const auto before = CountedObject::liveCount();
    auto object = makeRef<CountedObject>();

    zef::letOutlive(object.get(), "the test looks at it after its owner is gone");
    EXPECT_EQ(object->retainCount(), 2u);
    object = nullptr;

    EXPECT_EQ(CountedObject::liveCount(), before + 1);
}

TEST(LetOutliveTest, DoesNothingWithNil)
{
    EXPECT_NO_THROW(zef::letOutlive(nullptr, "nothing"));
}

} // namespace
