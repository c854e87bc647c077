// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Objects/OrderedSet.h"

#include "ZEFFilesystemTools/Platform/Objects/Number.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using zef::Number;

class OrderedSetTest : public testing::Test {
protected:
    Number* number(std::size_t index)
    {
        while (_numbers.size() <= index)
            _numbers.push_back(zef::makeRef<Number>(static_cast<int>(_numbers.size())));
        return _numbers[index].get();
    }

    std::vector<int> values() const
    {
        std::vector<int> result;
        for (std::size_t index = 0; index < set.endIndex(); ++index) {
            if (const auto* element = set.objectAtIndex(index))
                result.push_back(element->intValue());
        }
        return result;
    }

    zef::OrderedSet<Number> set{ 4 };

private:
    std::vector<zef::Ref<Number>> _numbers;
};

TEST_F(OrderedSetTest, IsEmptyAtFirst)
{
    EXPECT_EQ(set.count(), 0u);
    EXPECT_EQ(set.endIndex(), 0u);
    EXPECT_FALSE(set.contains(number(0)));
    EXPECT_FALSE(set.remove(number(0)));
    EXPECT_FALSE(set.compact());
}

TEST_F(OrderedSetTest, RemembersTheOrderOfInsertion)
{
    for (const std::size_t index : { 3u, 1u, 2u })
        EXPECT_TRUE(set.insert(number(index)));

    EXPECT_EQ(values(), (std::vector<int>{ 3, 1, 2 }));
    EXPECT_EQ(set.count(), 3u);
    EXPECT_EQ(set.indexOf(number(1)), 1u);
    EXPECT_EQ(set.indexOf(number(9)), set.endIndex());
}

TEST_F(OrderedSetTest, TakesAnObjectOnce)
{
    EXPECT_TRUE(set.insert(number(0)));
    EXPECT_FALSE(set.insert(number(0)));

    EXPECT_EQ(set.count(), 1u);
    EXPECT_TRUE(set.contains(number(0)));
}

TEST_F(OrderedSetTest, TellsEqualObjectsApart)
{
    const auto twin = zef::makeRef<Number>(0);
    set.insert(number(0));

    EXPECT_FALSE(set.contains(twin.get()));
    EXPECT_TRUE(set.insert(twin.get()));
}

TEST_F(OrderedSetTest, RetainsItsObjects)
{
    auto* object = number(0);
    set.insert(object);
    EXPECT_EQ(object->retainCount(), 2u);

    set.remove(object);
    EXPECT_EQ(object->retainCount(), 1u);
}

TEST_F(OrderedSetTest, KeepsTheOthersIndexesWhenOneIsRemoved)
{
    for (std::size_t index = 0; index < 3; ++index)
        set.insert(number(index));

    EXPECT_TRUE(set.remove(number(1)));
    EXPECT_FALSE(set.remove(number(1)));

    EXPECT_EQ(set.count(), 2u);
    EXPECT_EQ(set.endIndex(), 3u);
    EXPECT_EQ(set.objectAtIndex(1), nullptr);
    EXPECT_EQ(set.indexOf(number(2)), 2u);
    EXPECT_FALSE(set.contains(number(1)));
}

TEST_F(OrderedSetTest, TakesARemovedObjectAgainAtTheEnd)
{
    set.insert(number(0));
    set.insert(number(1));
    set.remove(number(0));

    EXPECT_TRUE(set.insert(number(0)));
    EXPECT_EQ(values(), (std::vector<int>{ 1, 0 }));
}

TEST_F(OrderedSetTest, ContainsNoNil)
{
    // Whatever slot nil may be looked for in, sooner or later it is that of a removed object.
    for (std::size_t index = 0; index < 300; ++index) {
        set.insert(number(index));
        set.remove(number(index));
        ASSERT_FALSE(set.contains(nullptr));
        ASSERT_EQ(set.indexOf(nullptr), set.endIndex());
        ASSERT_FALSE(set.remove(nullptr));
        ASSERT_EQ(set.count(), 0u);
    }
}

TEST_F(OrderedSetTest, ClosesGapsWhenTheyAreMany)
{
    for (std::size_t index = 0; index < 10; ++index)
        set.insert(number(index));
    for (std::size_t index = 0; index < 5; ++index)
        set.remove(number(index));
    EXPECT_FALSE(set.compact());
    EXPECT_EQ(set.endIndex(), 10u);

    set.remove(number(5));

    EXPECT_TRUE(set.compact());
    EXPECT_EQ(set.endIndex(), 4u);
    EXPECT_EQ(values(), (std::vector<int>{ 6, 7, 8, 9 }));
    EXPECT_EQ(set.indexOf(number(8)), 2u);
    EXPECT_FALSE(set.contains(number(3)));
}

TEST_F(OrderedSetTest, MayGrowDuringAWalk)
{
    set.insert(number(0));
    for (std::size_t index = 0; index < set.endIndex() && index < 100; ++index)
        set.insert(number(index + 1));

    EXPECT_EQ(set.count(), 101u);
    EXPECT_EQ(set.objectAtIndex(100), number(100));
}

// The same operations on a plain vector have to yield the same.
TEST_F(OrderedSetTest, DoesWhatAPlainListDoes)
{
    std::mt19937 random(7);
    std::vector<int> model;
    for (int step = 0; step < 20000; ++step) {
        const auto value = random() % 300;
        const auto found = std::find(model.begin(), model.end(), static_cast<int>(value));
        const bool isKnown = found != model.end();
        switch (random() % 5) {
        case 0:
        case 1:
            ASSERT_EQ(set.insert(number(value)), !isKnown);
            if (!isKnown)
                model.push_back(static_cast<int>(value));
            break;
        case 2:
        case 3:
            ASSERT_EQ(set.remove(number(value)), isKnown);
            if (isKnown)
                model.erase(found);
            break;
        default:
            ASSERT_EQ(set.contains(number(value)), isKnown);
            set.compact();
        }
        ASSERT_EQ(set.count(), model.size());
        if (step % 100 == 0) {
            ASSERT_EQ(values(), model);
        }
    }
}

} // namespace
