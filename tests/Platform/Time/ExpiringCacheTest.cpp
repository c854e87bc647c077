// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Time/ExpiringCache.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using Cache = zef::ExpiringCache<int, std::string>;

TEST(ExpiringCacheTest, FindsWhatWasInserted)
{
    Cache cache({ .seconds = 1 });
    cache.insert(1, "one", 100);
    cache.insert(2, "two", 100);

    EXPECT_EQ(cache.find(1, 100), "one");
    EXPECT_EQ(cache.find(2, 100), "two");
    EXPECT_EQ(cache.find(3, 100), std::nullopt);
}

TEST(ExpiringCacheTest, FindsAValueUntilItsTimeIsOver)
{
    Cache cache({ .seconds = 2 });
    cache.insert(1, "one", 100);

    EXPECT_EQ(cache.find(1, 101.9), "one");
    EXPECT_EQ(cache.find(1, 102), std::nullopt);
}

TEST(ExpiringCacheTest, FindsTheLatestValueOfAKey)
{
    Cache cache({ .seconds = 1 });
    cache.insert(1, "earlier", 100);
    cache.insert(1, "later", 100.5);

    EXPECT_EQ(cache.find(1, 101.2), "later");
}

TEST(ExpiringCacheTest, ForgetsWhatIsTooOld)
{
    Cache cache({ .seconds = 1 });
    cache.insert(1, "one", 100);
    cache.insert(2, "two", 100.5);

    cache.forgetOld(101.2);
    EXPECT_FALSE(cache.isEmpty());
    cache.forgetOld(101.5);
    EXPECT_TRUE(cache.isEmpty());
}

TEST(ExpiringCacheTest, ForgetsWhatIsTooOldWhenAnotherComes)
{
    zef::ExpiringCache<int, std::shared_ptr<int>> cache({ .seconds = 1 });
    const auto value = std::make_shared<int>(1);
    cache.insert(1, value, 100);
    EXPECT_EQ(value.use_count(), 2);

    cache.insert(2, nullptr, 101);

    EXPECT_EQ(value.use_count(), 1);
}

TEST(ExpiringCacheTest, ForgetsEverything)
{
    Cache cache({ .seconds = 1 });
    cache.insert(1, "one", 100);

    cache.forgetAll();

    EXPECT_TRUE(cache.isEmpty());
    EXPECT_EQ(cache.find(1, 100), std::nullopt);
}

TEST(ExpiringCacheTest, KeepsTheLatestValuesWithinTheirNumber)
{
    Cache cache({ .seconds = 1, .values = 2 });
    for (int key = 1; key <= 3; ++key)
        cache.insert(key, std::to_string(key), 100);

    EXPECT_EQ(cache.find(1, 100), std::nullopt);
    EXPECT_EQ(cache.find(2, 100), "2");
    EXPECT_EQ(cache.find(3, 100), "3");
}

TEST(ExpiringCacheTest, KeepsTheLatestValuesWithinTheirCost)
{
    Cache cache({ .seconds = 1, .cost = 10 });
    cache.insert(1, "one", 100, 5);
    cache.insert(2, "two", 100, 4);
    cache.insert(3, "three", 100, 6);

    EXPECT_EQ(cache.find(1, 100), std::nullopt);
    EXPECT_EQ(cache.find(2, 100), "two");
    EXPECT_EQ(cache.find(3, 100), "three");
}

TEST(ExpiringCacheTest, CountsTheCostOfAReplacedValueNoMore)
{
    Cache cache({ .seconds = 1, .cost = 10 });
    cache.insert(1, "one", 100, 5);
    cache.insert(2, "earlier", 100, 5);
    cache.insert(2, "later", 100, 5);

    EXPECT_EQ(cache.find(1, 100), "one");
    EXPECT_EQ(cache.find(2, 100), "later");
}

TEST(ExpiringCacheTest, KeepsASingleValueWhateverItCosts)
{
    Cache cache({ .seconds = 1, .cost = 10 });
    cache.insert(1, "one", 100, 5);
    cache.insert(2, "two", 100, 1000);

    EXPECT_EQ(cache.find(1, 100), std::nullopt);
    EXPECT_EQ(cache.find(2, 100), "two");
}

// Asks the cache that it dies in, which must not be locked.
struct Asker {
    explicit Asker(zef::ExpiringCache<int, std::shared_ptr<Asker>>& asked)
        : cache(asked)
    {
    }
    ~Asker() { std::ignore = cache.find(2, 100); }

    zef::ExpiringCache<int, std::shared_ptr<Asker>>& cache;
};

TEST(ExpiringCacheTest, DestroysNoValueWithItsLockHeld)
{
    zef::ExpiringCache<int, std::shared_ptr<Asker>> cache({ .seconds = 1, .values = 1 });
    cache.insert(1, std::make_shared<Asker>(cache), 100);

    cache.insert(2, nullptr, 100);

    EXPECT_TRUE(cache.find(2, 100));
}

TEST(ExpiringCacheTest, MayBeUsedByManyThreads)
{
    zef::ExpiringCache<int, int> cache({ .seconds = 10, .values = 4 });
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&cache, number] {
            for (int round = 0; round < 1000; ++round) {
                cache.insert(number, round, round);
                cache.forgetOld(round - 20);
                EXPECT_LE(cache.find(number, round).value_or(-1), round);
            }
        });
    }
    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ(cache.find(0, 999), 999);
}

} // namespace
