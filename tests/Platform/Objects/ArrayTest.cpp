// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Objects/Array.h"

#include "tests/support/CountedObject.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using zef::makeRef;
using zef::Ref;

class ArrayTest : public testing::Test {
protected:
    ArrayTest()
    {
        for (const auto& object : { first, second, third })
            array->addObject(object);
    }

    Ref<CountedObject> first = makeRef<CountedObject>();
    Ref<CountedObject> second = makeRef<CountedObject>();
    Ref<CountedObject> third = makeRef<CountedObject>();
    Ref<zef::Array<CountedObject>> array = makeRef<zef::Array<CountedObject>>();
};

TEST_F(ArrayTest, IsEmptyAtFirst)
{
    zef::Ref<zef::Array<CountedObject>> empty = makeRef<zef::Array<CountedObject>>(100u);

    EXPECT_TRUE(empty->isEmpty());
    EXPECT_EQ(empty->count(), 0u);
}

TEST_F(ArrayTest, KeepsItsObjectsInTheOrderOfAdding)
{
    EXPECT_EQ(array->count(), 3u);
    EXPECT_EQ(array->objectAtIndex(0), first.get());
    EXPECT_EQ(array->objectAtIndex(1), second.get());
    EXPECT_EQ(array->objectAtIndex(2), third.get());
}

TEST_F(ArrayTest, OwnsItsObjects)
{
    EXPECT_EQ(first->retainCount(), 2u);

    array = nullptr;

    EXPECT_EQ(first->retainCount(), 1u);
}

TEST_F(ArrayTest, FindsAnObjectByIdentity)
{
    EXPECT_EQ(array->indexOfIdentical(second.get()), 1u);
    EXPECT_TRUE(array->containsIdentical(third.get()));
    auto stranger = makeRef<CountedObject>();
    EXPECT_EQ(array->indexOfIdentical(stranger.get()), array->count());
    EXPECT_FALSE(array->containsIdentical(stranger.get()));
}

TEST_F(ArrayTest, RemovesTheObjectAtAnIndex)
{
    array->removeObjectAtIndex(1);

    EXPECT_EQ(array->count(), 2u);
    EXPECT_EQ(array->objectAtIndex(1), third.get());
    EXPECT_EQ(second->retainCount(), 1u);
}

TEST_F(ArrayTest, IsWholeWhenARemovedObjectLooksAtItWhileItGoes)
{
    std::size_t countSeen = 0;
    array->addObject(makeRef<CountedObject>([&](CountedObject&) { countSeen = array->count(); }));

    array->removeObjectAtIndex(3);

    EXPECT_EQ(countSeen, 3u);
}

TEST_F(ArrayTest, IsEmptyAlreadyWhenItsRemovedObjectsGo)
{
    std::size_t countSeen = 7;
    array->addObject(makeRef<CountedObject>([&](CountedObject&) { countSeen = array->count(); }));

    array->removeAllObjects();

    EXPECT_EQ(countSeen, 0u);
    EXPECT_EQ(first->retainCount(), 1u);
}

TEST_F(ArrayTest, HandsItsObjectsOver)
{
    const auto objects = array->takeAllObjects();

    EXPECT_EQ(objects, (std::vector<Ref<CountedObject>>{ first, second, third }));
    EXPECT_TRUE(array->isEmpty());
}

TEST_F(ArrayTest, EnumeratesInOrder)
{
    std::vector<CountedObject*> seen;

    array->enumerate([&](CountedObject* object) { seen.push_back(object); });

    EXPECT_EQ(seen, (std::vector<CountedObject*>{ first.get(), second.get(), third.get() }));
}

TEST_F(ArrayTest, EnumeratingThrowsAtTheFirstStepAfterAChange)
{
    std::vector<CountedObject*> seen;
    const auto removeWhileWalking = [&] {
        array->enumerate([&](CountedObject* object) {
            seen.push_back(object);
            array->removeObjectAtIndex(0);
        });
    };

    EXPECT_THROW(removeWhileWalking(), zef::MutationError);
    EXPECT_EQ(seen, std::vector<CountedObject*>{ first.get() });
}

TEST_F(ArrayTest, EnumeratingNoticesAnAddition)
{
    const auto addWhileWalking = [&] {
        array->enumerate([&](CountedObject*) { array->addObject(first); });
    };

    EXPECT_THROW(addWhileWalking(), std::logic_error);
}

TEST_F(ArrayTest, KeepsAnObjectAliveWhileItIsVisited)
{
    array->removeAllObjects();
    array->addObject(makeRef<CountedObject>());
    std::uint32_t retainCount = 0;
    const auto emptyWhileWalking = [&] {
        array->enumerate([&](CountedObject* object) {
            array->removeAllObjects();
            retainCount = object->retainCount();
        });
    };

    EXPECT_THROW(emptyWhileWalking(), zef::MutationError);
    EXPECT_EQ(retainCount, 1u);
}

TEST_F(ArrayTest, ServesTheRangeLoop)
{
    std::vector<CountedObject*> seen;

    for (const auto& object : *array)
        seen.push_back(object.get());

    EXPECT_EQ(seen.size(), 3u);
}

class ArrayOfValuesTest : public testing::Test {
protected:
    ArrayOfValuesTest()
    {
        values->addObject("one");
        values->addObject("two");
    }

    Ref<zef::Array<std::string>> values = makeRef<zef::Array<std::string>>();
};

TEST_F(ArrayOfValuesTest, AreKeptInTheOrderOfAdding)
{
    ASSERT_EQ(values->count(), 2u);
    EXPECT_EQ(values->objectAtIndex(0), "one");
    EXPECT_EQ(values->objectAtIndex(1), "two");
}

TEST_F(ArrayOfValuesTest, AreEnumeratedInOrder)
{
    std::string all;
    values->enumerate([&](const std::string& value) { all += value + " "; });

    EXPECT_EQ(all, "one two ");
}

TEST_F(ArrayOfValuesTest, EnumeratingThrowsAtTheFirstStepAfterAChange)
{
    EXPECT_THROW(values->enumerate([&](const std::string&) { values->addObject("three"); }),
        zef::MutationError);
    EXPECT_THROW(values->enumerate([&](const std::string&) { values->removeAllObjects(); }),
        zef::MutationError);
    EXPECT_TRUE(values->isEmpty());
}

} // namespace
