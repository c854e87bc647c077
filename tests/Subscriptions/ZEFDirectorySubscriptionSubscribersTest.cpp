// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/SubscriptionFixture.h"

#include <stdexcept>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using zef::makeRef;
using zef::Ref;

/// A subscriber that equals any other with the same name.
class NamedSubscriber final : public ZEFObject, public ZEFDirectorySubscriptionProtocol {
public:
    explicit NamedSubscriber(int name)
        : _name(name)
    {
    }

    bool isEqual(const ZEFObject* other) const override
    {
        const auto* named = dynamic_cast<const NamedSubscriber*>(other);
        return named && named->_name == _name;
    }

    std::size_t hash() const override { return static_cast<std::size_t>(_name); }

    void directorySubscriptionFoundChanges(ZEFDirectorySubscription*, ZEFChangeArray*) override
    {
        ++callCount;
    }

    int callCount = 0;

private:
    int _name;
};

class ZEFDirectorySubscriptionSubscribersTest : public SubscriptionFixture {
protected:
    /// A subscriber that is subscribed.
    RecordingSubscriber& subscribed()
    {
        auto& subscriber = newSubscriber();
        subscription->subscribe(&subscriber);
        return subscriber;
    }

    void notify() { subscription->notifySubscribers(changes.get()); }

    Ref<ZEFDirectorySubscription> subscription = watch();
    Ref<ZEFChangeArray> changes = makeRef<ZEFChangeArray>();
};

TEST_F(ZEFDirectorySubscriptionSubscribersTest, CountsEachSubscriber)
{
    subscribed();
    subscribed();

    EXPECT_EQ(subscription->numberOfSubscribers(), 2);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, SubscribingTwiceLeavesOneEntry)
{
    auto& subscriber = subscribed();
    subscription->subscribe(&subscriber);

    EXPECT_EQ(subscription->numberOfSubscribers(), 1);
    notify();
    EXPECT_THAT(subscriber.calls, SizeIs(1));
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, IgnoresNil)
{
    subscription->subscribe(nullptr);

    EXPECT_EQ(subscription->numberOfSubscribers(), 0);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, IgnoresWhatDoesNotConform)
{
    auto object = item("watched");

    subscription->subscribe(object.get());

    EXPECT_EQ(subscription->numberOfSubscribers(), 0);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, TellsSubscribersApartByTheirOwnEquality)
{
    auto one = makeRef<NamedSubscriber>(1);
    auto equal = makeRef<NamedSubscriber>(1);
    auto other = makeRef<NamedSubscriber>(2);

    for (const auto& subscriber : { one, equal, other })
        subscription->subscribe(subscriber.get());
    notify();

    EXPECT_EQ(one->callCount, 1);
    EXPECT_EQ(equal->callCount, 0);
    EXPECT_EQ(other->callCount, 1);
    EXPECT_EQ(subscription->unsubscribe(equal.get()), 1);
    EXPECT_EQ(subscription->unsubscribe(other.get()), 0);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, UnsubscribingReturnsHowManyAreLeft)
{
    auto& first = subscribed();
    auto& second = subscribed();

    EXPECT_EQ(subscription->unsubscribe(&first), 1);
    EXPECT_EQ(subscription->unsubscribe(&second), 0);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, UnsubscribingNilOrAStrangerReturnsTheCount)
{
    subscribed();

    EXPECT_EQ(subscription->unsubscribe(nullptr), 1);
    EXPECT_EQ(subscription->unsubscribe(&newSubscriber()), 1);
    EXPECT_EQ(subscription->numberOfSubscribers(), 1);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, RetainsNoSubscriber)
{
    auto& subscriber = newSubscriber();
    const auto before = subscriber.retainCount();

    subscription->subscribe(&subscriber);

    EXPECT_EQ(subscriber.retainCount(), before);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, IsNotRetainedByASubscriber)
{
    subscribed();

    EXPECT_EQ(subscription->retainCount(), 1u);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, GivesEverySubscriberItselfAndTheSameArray)
{
    auto& first = subscribed();
    auto& second = subscribed();

    notify();

    for (const auto* subscriber : { &first, &second }) {
        ASSERT_THAT(subscriber->calls, SizeIs(1));
        EXPECT_EQ(subscriber->calls[0].subscription, subscription.get());
        EXPECT_EQ(subscriber->calls[0].changes.get(), changes.get());
    }
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, SkipsALaterSubscriberThatACallbackUnsubscribed)
{
    auto& first = subscribed();
    auto& second = subscribed();
    auto& third = subscribed();
    first.action = [&] { subscription->unsubscribe(&second); };

    notify();

    EXPECT_THAT(second.calls, IsEmpty());
    EXPECT_THAT(third.calls, SizeIs(1));
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, LetsASubscriberUnsubscribeItselfAndEarlierOnes)
{
    auto& first = subscribed();
    auto& second = subscribed();
    auto& third = subscribed();
    second.action = [&] {
        subscription->unsubscribe(&first);
        subscription->unsubscribe(&second);
    };

    notify();
    notify();

    EXPECT_THAT(first.calls, SizeIs(1));
    EXPECT_THAT(second.calls, SizeIs(1));
    EXPECT_THAT(third.calls, SizeIs(2));
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, CallsNobodyInThePassInWhichTheySubscribe)
{
    auto& late = newSubscriber();
    subscribed().action = [&] { subscription->subscribe(&late); };

    notify();
    EXPECT_THAT(late.calls, IsEmpty());

    notify();
    EXPECT_THAT(late.calls, SizeIs(1));
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, CallsWhoeverIsASubscriberAgainWhenTheirTurnComes)
{
    auto& first = subscribed();
    auto& second = subscribed();
    first.action = [&] {
        subscription->unsubscribe(&second);
        subscription->subscribe(&second);
    };

    notify();

    EXPECT_THAT(second.calls, SizeIs(1));
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, TouchesNoSubscriberThatDiedInThePass)
{
    auto& first = subscribed();
    auto mortal = makeRef<NamedSubscriber>(1);
    subscription->subscribe(mortal.get());
    first.action = [&] {
        subscription->unsubscribe(mortal.get());
        mortal = nullptr;
    };

    notify();

    EXPECT_EQ(subscription->numberOfSubscribers(), 1);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, OutlivesThePassInWhichItIsLetGo)
{
    auto& second = newSubscriber();
    subscribed().action = [&] { subscription = nullptr; };
    subscription->subscribe(&second);

    notify();

    EXPECT_THAT(second.calls, SizeIs(1));
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, AnExceptionPassesThroughAfterTheOthersWereCalled)
{
    auto& second = newSubscriber();
    subscribed().action = [] { throw std::runtime_error("first"); };
    subscription->subscribe(&second);
    second.action = [] { throw std::logic_error("second"); };

    EXPECT_THROW(notify(), std::runtime_error);

    EXPECT_THAT(second.calls, SizeIs(1));
    EXPECT_EQ(subscription->numberOfSubscribers(), 2);
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, AreToldOfWhatACheckFinds)
{
    auto& subscriber = subscribed();
    folder.write("watched/a");

    subscription->checkDirectory();

    EXPECT_THAT(subscriber.words(), ElementsAre(ElementsAre("updated watched", "appeared a")));
}

TEST_F(ZEFDirectorySubscriptionSubscribersTest, AreNotCalledWhenACheckFindsNothing)
{
    auto& subscriber = subscribed();

    subscription->checkDirectory();

    EXPECT_THAT(subscriber.calls, IsEmpty());
}

#ifndef NDEBUG
using ZEFDirectorySubscriptionSubscribersDeathTest = ZEFDirectorySubscriptionSubscribersTest;

TEST_F(ZEFDirectorySubscriptionSubscribersDeathTest, SubscribingOnASecondThreadIsAProgrammingError)
{
    EXPECT_DEATH(std::thread([&] { subscription->subscribe(nullptr); }).join(), "isOnItsThread");
}
#endif

} // namespace
