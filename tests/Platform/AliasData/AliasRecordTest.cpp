// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/AliasRecord.h"

#include "tests/support/AliasBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

using Bytes = zef::AliasData::Bytes;

zef::AliasRecord makeRecord()
{
    zef::AliasRecord record;
    record.inode = 0x1122334455667788;
    record.birthTime = -5;
    record.hasBirthTime = true;
    record.handle.type = 1;
    record.handle.length = 8;
    record.handle.isDecodable = true;
    record.handle.bytes[7] = std::byte{ 0xff };
    record.volume.type = "ext4";
    record.volume.uuid[0] = 9;
    record.volume.fileSystemID = 0x0102030405060708;
    record.volume.mountPoint = "/volume";
    record.chain = { { 11, "folder" }, { 12, "line\nend \xff" } };
    return record;
}

bool isRefused(const Bytes& bytes)
{
    return !zef::AliasRecord::decode(bytes);
}

// As a record that says so would be written, whatever `encode` thinks of it.
Bytes withLastName(const std::string& name)
{
    auto record = makeRecord();
    record.chain.back().name = std::string(name.size(), 'x');
    auto bytes = record.encode();
    std::transform(name.begin(), name.end(), bytes.end() - static_cast<std::ptrdiff_t>(name.size()),
        [](char character) { return static_cast<std::byte>(character); });
    repairDigest(bytes);
    return bytes;
}

TEST(AliasRecordTest, ComesBackFromItsBytes)
{
    const auto original = makeRecord();
    const auto record = zef::AliasRecord::decode(original.encode());

    ASSERT_TRUE(record);
    EXPECT_EQ(record->inode, original.inode);
    EXPECT_EQ(record->birthTime, original.birthTime);
    EXPECT_TRUE(record->hasBirthTime);
    EXPECT_EQ(record->handle, original.handle);
    EXPECT_TRUE(record->handle.isDecodable);
    EXPECT_EQ(record->volume.type, original.volume.type);
    EXPECT_EQ(record->volume.uuid, original.volume.uuid);
    EXPECT_EQ(record->volume.fileSystemID, original.volume.fileSystemID);
    EXPECT_EQ(record->volume.mountPoint, original.volume.mountPoint);
    ASSERT_EQ(record->chain.size(), 2u);
    EXPECT_EQ(record->chain[0].inode, 11u);
    EXPECT_EQ(record->chain[1].name, "line\nend \xff");
}

TEST(AliasRecordTest, ComesBackWithoutWhatIsNotKnown)
{
    zef::AliasRecord original;
    original.volume.mountPoint = "/";
    const auto record = zef::AliasRecord::decode(original.encode());

    ASSERT_TRUE(record);
    EXPECT_FALSE(record->hasBirthTime);
    EXPECT_FALSE(record->handle.isKnown());
    EXPECT_FALSE(record->hasStrongIdentity());
    EXPECT_TRUE(record->chain.empty());
}

TEST(AliasRecordTest, WritesItsFormAndVersionFirst)
{
    const auto bytes = makeRecord().encode();
    const std::string start(reinterpret_cast<const char*>(bytes.data()), 5);

    EXPECT_EQ(start, "ZEFA\x01");
    EXPECT_EQ(std::to_integer<std::size_t>(bytes[5]), bytes.size() - 17);
}

TEST(AliasRecordTest, WritesNumbersWithTheirLowestByteFirst)
{
    const auto bytes = makeRecord().encode();

    EXPECT_EQ(bytes[18], std::byte{ 0x88 });
    EXPECT_EQ(bytes[25], std::byte{ 0x11 });
}

TEST(AliasRecordTest, TellsThePathThatItHolds)
{
    zef::PathBytes path;

    ASSERT_TRUE(makeRecord().path(path));
    EXPECT_EQ(path.view(), "/volume/folder/line\nend \xff");
    EXPECT_EQ(makeRecord().parentInode(), 11u);
}

TEST(AliasRecordTest, TellsThePathOfTheRootAndOfWhatIsInIt)
{
    auto record = makeRecord();
    record.volume.mountPoint = "/";
    zef::PathBytes path;
    ASSERT_TRUE(record.path(path));
    EXPECT_EQ(path.view(), "/folder/line\nend \xff");
    record.chain.clear();

    ASSERT_TRUE(record.path(path));
    EXPECT_EQ(path.view(), "/");
}

TEST(AliasRecordTest, HasNoPathWhereThatWouldBeTooLong)
{
    auto record = makeRecord();
    record.chain.assign(20, { 1, std::string(255, 'n') });
    zef::PathBytes path;

    EXPECT_FALSE(record.path(path));
    EXPECT_FALSE(isRefused(record.encode()));
}

TEST(AliasRecordTest, RefusesToBeWrittenBeyondItsBounds)
{
    auto longName = makeRecord();
    longName.chain.back().name.assign(256, 'n');
    auto longType = makeRecord();
    longType.volume.type.assign(65, 't');
    auto longChain = makeRecord();
    longChain.chain.assign(1025, { 1, "n" });
    auto longBytes = makeRecord();
    longBytes.chain.assign(1000, { 1, std::string(255, 'n') });
    auto relative = makeRecord();
    relative.volume.mountPoint = "volume";

    EXPECT_TRUE(longName.encode().empty());
    EXPECT_TRUE(longType.encode().empty());
    EXPECT_TRUE(longChain.encode().empty());
    EXPECT_TRUE(longBytes.encode().empty());
    EXPECT_TRUE(relative.encode().empty());
}

TEST(AliasRecordTest, RefusesNamesThatLeadElsewhere)
{
    EXPECT_FALSE(isRefused(withLastName("harmless")));
    EXPECT_TRUE(isRefused(withLastName(".")));
    EXPECT_TRUE(isRefused(withLastName("..")));
    EXPECT_TRUE(isRefused(withLastName("../x")));
    EXPECT_TRUE(isRefused(withLastName(std::string("a\0b", 3))));
}

TEST(AliasRecordTest, RefusesAMountPointThatIsNotAbsolute)
{
    auto bytes = makeRecord().encode();
    const std::string text = "/volume";
    const auto found = std::search(bytes.begin(), bytes.end(), text.begin(), text.end(),
        [](std::byte one, char other) { return one == static_cast<std::byte>(other); });
    ASSERT_NE(found, bytes.end());
    *found = std::byte{ 'v' };
    repairDigest(bytes);

    EXPECT_TRUE(isRefused(bytes));
}

TEST(AliasRecordTest, RefusesEveryPartOfItsBytes)
{
    const auto whole = makeRecord().encode();

    for (std::size_t length = 0; length < whole.size(); ++length) {
        Bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_TRUE(isRefused(part)) << length;
        repairDigest(part);
        EXPECT_TRUE(isRefused(part)) << length << " repaired";
    }
}

TEST(AliasRecordTest, RefusesBytesBehindItsEnd)
{
    auto bytes = makeRecord().encode();
    bytes.push_back(std::byte{ 0 });
    EXPECT_TRUE(isRefused(bytes));
    repairDigest(bytes);

    EXPECT_TRUE(isRefused(bytes));
}

TEST(AliasRecordTest, RefusesEverySingleBitThatWasTurned)
{
    const auto whole = makeRecord().encode();

    for (std::size_t bit = 0; bit < 8 * whole.size(); ++bit) {
        auto bytes = whole;
        bytes[bit / 8] ^= static_cast<std::byte>(1u << (bit % 8));
        EXPECT_TRUE(isRefused(bytes)) << bit;
    }
}

TEST(AliasRecordTest, RefusesMoreThan64KiB)
{
    auto record = makeRecord();
    record.chain.assign(1000, { 1, std::string(255, 'n') });
    Bytes bytes(zef::AliasRecord::mostBytes + 1);
    const auto start = makeRecord().encode();
    std::copy_n(start.begin(), 5, bytes.begin());
    repairDigest(bytes);

    EXPECT_TRUE(isRefused(bytes));
}

TEST(AliasRecordTest, TakesTheDigestOfAHandleThatIsTooLong)
{
    auto bytes = makeRecord().encode();
    // The handle's length stands after the flags, two numbers, the type, the UUID and the number.
    const auto place = 17 + 1 + 8 + 8 + 2 + 4 + 16 + 8 + 1;
    ASSERT_EQ(bytes[place], std::byte{ 8 });
    bytes[place] = std::byte{ 100 };
    bytes.insert(bytes.begin() + place + 1, 92, std::byte{ 7 });
    repairDigest(bytes);

    const auto record = zef::AliasRecord::decode(bytes);
    ASSERT_TRUE(record);
    EXPECT_TRUE(record->handle.isDigest);
    EXPECT_FALSE(record->handle.isDecodable);
    EXPECT_EQ(record->handle.length, 8);
}

TEST(AliasRecordTest, KeepsItsBoundsWhateverTheBytesSay)
{
    std::mt19937 random(1);
    const auto whole = makeRecord().encode();
    std::size_t readable = 0;
    for (int round = 0; round < 20000; ++round) {
        auto bytes = whole;
        for (auto left = random() % 4 + 1; left; --left)
            bytes[random() % bytes.size()] = static_cast<std::byte>(random());
        repairDigest(bytes);
        const auto record = zef::AliasRecord::decode(bytes);
        if (!record)
            continue;
        ++readable;
        ASSERT_LE(record->handle.length, record->handle.bytes.size());
        ASSERT_EQ(record->volume.mountPoint.front(), '/');
        for (const auto& component : record->chain)
            ASSERT_EQ(component.name.find('/'), std::string::npos);
    }
    EXPECT_GT(readable, 1000u);
}

} // namespace
