// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include "ZEFFilesystemTools/Platform/Objects/LetOutlive.h"

#include "tests/support/CountedObject.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace {

using zef::makeRef;
using zef::Ref;

/// A protocol and a class that conforms to it.
class Protocol {
public:
    virtual ~Protocol() = default;
    virtual int answer() = 0;
};

class ConformingObject final : public ZEFObject, public Protocol {
public:
    int answer() override { return 42; }
};

class DerivedObject final : public CountedObject {
public:
    inline static constexpr zef::Class classObject{ "DerivedObject", &CountedObject::classObject };
    const zef::Class& objectClass() const override { return classObject; }
};

TEST(ZEFObjectTest, CountsItsReferences)
{
    auto object = makeRef<CountedObject>();

    object->retain();
    EXPECT_EQ(object->retainCount(), 2u);
    object->release();

    EXPECT_EQ(object->retainCount(), 1u);
}

TEST(ZEFObjectTest, DeallocsOnceWithItsLastReferenceWhileItIsWhole)
{
    int calls = 0;
    std::string description;
    auto object = makeRef<CountedObject>([&](CountedObject& self) {
        ++calls;
        description = self.description();
    });
    const auto expected = object->description();

    object->retain();
    object->release();
    EXPECT_EQ(calls, 0);
    object = nullptr;

    EXPECT_EQ(calls, 1);
    EXPECT_EQ(description, expected);
}

TEST(ZEFObjectTest, RetainIfAliveRetainsALivingObject)
{
    auto object = makeRef<CountedObject>();

    EXPECT_TRUE(object->retainIfAlive());

    EXPECT_EQ(object->retainCount(), 2u);
    object->release();
}

TEST(ZEFObjectTest, RetainIfAliveRefusesAnObjectWhoseLastReferenceIsGone)
{
    bool wasRetained = true;
    auto object = makeRef<CountedObject>(
        [&](CountedObject& self) { wasRetained = self.retainIfAlive(); });

    object = nullptr;

    EXPECT_FALSE(wasRetained);
}

TEST(ZEFObjectTest, AnImmortalObjectIsNeverFreed)
{
    const auto before = CountedObject::liveCount();
    auto* object = new CountedObject;
    zef::letOutlive(object, "immortal");

    object->makeImmortal();
    for (int release = 0; release < 10; ++release)
        object->release();
    object->retain();

    EXPECT_EQ(object->retainCount(), 4294967295u);
    EXPECT_TRUE(object->retainIfAlive());
    EXPECT_EQ(object->retainCount(), 4294967295u);
    EXPECT_EQ(CountedObject::liveCount(), before + 1);
}

TEST(ZEFObjectTest, CountsRightWhenManyThreadsRetainAndRelease)
{
    const auto before = CountedObject::liveCount();
    auto object = makeRef<CountedObject>();
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([object] {
            for (int turn = 0; turn < 10000; ++turn) {
                object->retain();
                if (object->retainIfAlive())
                    object->release();
                object->release();
            }
        });
    }

    for (auto& thread : threads)
        thread.join();
    threads.clear();

    EXPECT_EQ(object->retainCount(), 1u);
    object = nullptr;
    EXPECT_EQ(CountedObject::liveCount(), before);
}

TEST(ZEFObjectTest, IsEqualToItselfOnly)
{
    auto object = makeRef<CountedObject>();
    auto other = makeRef<CountedObject>();

    EXPECT_TRUE(object->isEqual(object.get()));
    EXPECT_FALSE(object->isEqual(other.get()));
    EXPECT_FALSE(object->isEqual(nullptr));
    EXPECT_EQ(object->hash(), object->hash());
}

TEST(ZEFObjectTest, DescribesItselfByClassAndAddress)
{
    auto object = makeRef<DerivedObject>();
    char expected[64];
    std::snprintf(expected, sizeof expected, "<DerivedObject: %p>",
        static_cast<void*>(static_cast<ZEFObject*>(object.get())));

    EXPECT_EQ(object->description(), expected);
}

TEST(ZEFObjectTest, KnowsItsClassAndSuperclasses)
{
    Ref<ZEFObject> object = makeRef<DerivedObject>();

    EXPECT_EQ(&object->objectClass(), &DerivedObject::classObject);
    EXPECT_TRUE(object->isKindOfClass(DerivedObject::classObject));
    EXPECT_TRUE(object->isKindOfClass(CountedObject::classObject));
    EXPECT_TRUE(object->isKindOfClass(ZEFObject::classObject));
    EXPECT_FALSE(makeRef<CountedObject>()->isKindOfClass(DerivedObject::classObject));
}

TEST(ZEFObjectTest, HasNoCopyUnlessItsClassSaysSo)
{
    EXPECT_FALSE(makeRef<CountedObject>()->copy());
}

TEST(ZEFObjectTest, ProtocolCastAnswersForConformingObjectsOnly)
{
    auto conforming = makeRef<ConformingObject>();
    auto other = makeRef<CountedObject>();

    auto* protocol = zef::protocolCast<Protocol>(conforming.get());

    ASSERT_TRUE(protocol);
    EXPECT_EQ(protocol->answer(), 42);
    EXPECT_EQ(zef::protocolCast<Protocol>(other.get()), nullptr);
    EXPECT_EQ(zef::protocolCast<Protocol>(nullptr), nullptr);
}

TEST(ZEFObjectTest, DowncastAnswersForInstancesOfTheClassAndOfItsSubclasses)
{
    const Ref<ZEFObject> derived = makeRef<DerivedObject>();
    const Ref<ZEFObject> counted = makeRef<CountedObject>();

    EXPECT_EQ(zef::downcast<DerivedObject>(derived.get()), derived.get());
    EXPECT_EQ(zef::downcast<CountedObject>(derived.get()), derived.get());
    EXPECT_EQ(zef::downcast<DerivedObject>(counted.get()), nullptr);
}

TEST(ZEFObjectTest, DowncastOfNullIsNull)
{
    EXPECT_EQ(zef::downcast<CountedObject>(Ref<ZEFObject>().get()), nullptr);
}

TEST(ZEFObjectTest, DowncastKeepsConst)
{
    const Ref<ZEFObject> object = makeRef<CountedObject>();
    const ZEFObject* borrowed = object.get();

    const auto* counted = zef::downcast<CountedObject>(borrowed);

    static_assert(std::is_same_v<decltype(counted), const CountedObject*>);
    static_assert(!std::is_assignable_v<CountedObject*&, decltype(counted)>);
    EXPECT_EQ(counted, borrowed);
}

} // namespace
