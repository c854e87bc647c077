// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class ZEFArchiveDictionaryTest : public testing::Test {
protected:
    std::vector<std::string> keys() const
    {
        std::vector<std::string> all;
        dictionary->enumerate([&](const std::string& key, const auto&) { all.push_back(key); });
        return all;
    }

    zef::Ref<ZEFArchiveDictionary> dictionary = zef::makeRef<ZEFArchiveDictionary>(
        std::size_t{ 10 });
};

TEST_F(ZEFArchiveDictionaryTest, NamesItsKeysAsTheyArePublished)
{
    EXPECT_STREQ(ZEFArchiveDataKey, "ZEFArchiveDataKey");
    EXPECT_STREQ(ZEFArchivePathKey, "ZEFArchivePathKey");
}

TEST_F(ZEFArchiveDictionaryTest, IsEmptyAtFirst)
{
    EXPECT_TRUE(dictionary->isEmpty());
    EXPECT_EQ(dictionary->valueForKey("key"), nullptr);
}

TEST_F(ZEFArchiveDictionaryTest, KeepsValuesOfEachKind)
{
    dictionary->setStringForKey("text", "string");
    dictionary->setDataForKey({ std::byte{ 1 }, std::byte{ 0 } }, "data");
    dictionary->setBooleanForKey(true, "boolean");

    EXPECT_EQ(*dictionary->stringForKey("string"), "text");
    EXPECT_EQ(dictionary->dataForKey("data")->size(), 2u);
    EXPECT_TRUE(dictionary->booleanForKey("boolean"));
    EXPECT_EQ(dictionary->count(), 3u);
}

TEST_F(ZEFArchiveDictionaryTest, HasNothingOfAnotherKind)
{
    dictionary->setStringForKey("text", "string");
    dictionary->setBooleanForKey(true, "boolean");

    EXPECT_EQ(dictionary->dataForKey("string"), nullptr);
    EXPECT_EQ(dictionary->stringForKey("boolean"), nullptr);
    EXPECT_FALSE(dictionary->booleanForKey("string"));
    EXPECT_FALSE(dictionary->booleanForKey("missing"));
}

TEST_F(ZEFArchiveDictionaryTest, KeepsTheOrderInWhichKeysCame)
{
    dictionary->setStringForKey("1", "z");
    dictionary->setStringForKey("2", "a");
    dictionary->setBooleanForKey(false, "z");

    EXPECT_EQ(keys(), (std::vector<std::string>{ "z", "a" }));
    EXPECT_EQ(dictionary->stringForKey("z"), nullptr);
}

TEST_F(ZEFArchiveDictionaryTest, ForgetsARemovedKey)
{
    dictionary->setStringForKey("1", "one");
    dictionary->setStringForKey("2", "two");
    dictionary->removeValueForKey("one");
    dictionary->removeValueForKey("missing");

    EXPECT_EQ(keys(), (std::vector<std::string>{ "two" }));
}

TEST_F(ZEFArchiveDictionaryTest, ReportsAChangeDuringAWalk)
{
    dictionary->setStringForKey("1", "one");

    EXPECT_THROW(dictionary->enumerate(
                     [&](const auto&, const auto&) { dictionary->setStringForKey("2", "two"); }),
        zef::MutationError);
}

TEST_F(ZEFArchiveDictionaryTest, IsEqualToAnotherWithEqualValues)
{
    auto other = zef::makeRef<ZEFArchiveDictionary>();
    dictionary->setStringForKey("1", "one");
    dictionary->setBooleanForKey(true, "two");
    other->setBooleanForKey(true, "two");
    other->setStringForKey("1", "one");

    EXPECT_TRUE(dictionary->isEqual(other.get()));
    EXPECT_EQ(dictionary->hash(), other->hash());
    other->setStringForKey("another", "one");
    EXPECT_FALSE(dictionary->isEqual(other.get()));
    EXPECT_FALSE(dictionary->isEqual(nullptr));
}

TEST_F(ZEFArchiveDictionaryTest, DescribesItsValues)
{
    dictionary->setStringForKey("/file", ZEFArchivePathKey);
    dictionary->setDataForKey(std::vector<std::byte>(3), ZEFArchiveDataKey);
    dictionary->setBooleanForKey(true, "flag");

    EXPECT_EQ(dictionary->description(),
        "{ ZEFArchivePathKey = /file; ZEFArchiveDataKey = <3 bytes>; flag = 1; }");
}

} // namespace
