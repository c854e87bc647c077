// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/FileManager/ZEFFileManagerState.h"
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"
#include "ZEFFilesystemTools/Platform/Objects/FirstException.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

namespace {

constexpr double releaseDelay = 30.0;
constexpr double releaseDelayOfInvalid = 0.0;

} // namespace

ZEFDirectorySubscription* ZEFFileManager::subscribeForFile(ZEFObject* subscriber, ZEFFileItem* file)
{
    if (!file || state().isShutDown)
        return nullptr;
    auto* subscription = subscriptionForFile(file);
    if (subscription && subscription->isValid())
        subscription->subscribe(subscriber);
    else
        subscription = makeSubscription(subscriber, *file);
    state().hadSubscribers = true;
    state().madeFiles = true;
    return subscription;
}

ZEFDirectorySubscription* ZEFFileManager::makeSubscription(ZEFObject* subscriber, ZEFFileItem& file)
{
    auto made = ZEFDirectorySubscription::initForSubscriber(
        subscriber, &file, state().fileClass, state().asynchronous);
    if (!made)
        return nullptr;
    auto* subscription = made.get();
    state().subscriptions->add(file, std::move(made));
    if (!state().timer && !state().paused)
        ZEF_makeTimer();
    return subscription;
}

ZEFDirectorySubscription* ZEFFileManager::subscribeForPath(
    ZEFObject* subscriber, std::string_view path)
{
    const auto file = state().newFileItemForPath(path);
    auto* subscription = subscribeForFile(subscriber, file.get());
    state().madeFiles = true;
    return subscription;
}

ZEFDirectorySubscription* ZEFFileManager::subscribeForURL(
    ZEFObject* subscriber, const zef::FileURL& url)
{
    const auto file = state().newFileItemForURL(url);
    auto* subscription = subscribeForFile(subscriber, file.get());
    state().madeFiles = true;
    return subscription;
}

void ZEFFileManager::unsubscribeForFile(ZEFObject* subscriber, ZEFFileItem* file)
{
    unsubscribeForSubscription(subscriber, subscriptionForFile(file));
}

void ZEFFileManager::unsubscribeForPath(ZEFObject* subscriber, std::string_view path)
{
    const auto file = state().newFileItemForPath(path);
    unsubscribeForFile(subscriber, file.get());
    state().madeFiles = true;
}

void ZEFFileManager::unsubscribeForURL(ZEFObject* subscriber, const zef::FileURL& url)
{
    const auto file = state().newFileItemForURL(url);
    unsubscribeForFile(subscriber, file.get());
    state().madeFiles = true;
}

void ZEFFileManager::unsubscribeForSubscription(
    ZEFObject* subscriber, ZEFDirectorySubscription* subscription)
{
    if (subscription && !subscription->unsubscribe(subscriber))
        scheduleRelease(*subscription);
}

void ZEFFileManager::unsubscribe(ZEFObject* subscriber)
{
    const zef::Ref list(&state().subscriptions->list());
    list->enumerate([&](ZEFDirectorySubscription* subscription) {
        if (!subscription->unsubscribe(subscriber))
            scheduleRelease(*subscription);
    });
}

ZEFDirectorySubscription* ZEFFileManager::subscriptionForFile(const ZEFFileItem* file) const
{
    return file ? state().subscriptions->subscriptionForFile(*file) : nullptr;
}

std::vector<ZEFDirectorySubscription*> ZEFFileManager::subscriptions() const
{
    std::vector<ZEFDirectorySubscription*> result;
    for (const auto& subscription : state().subscriptions->list())
        result.push_back(subscription.get());
    return result;
}

void ZEFFileManager::scheduleRelease(ZEFDirectorySubscription& subscription)
{
    if (state().isShutDown)
        return;
    const auto delay = subscription.isValid() ? releaseDelay : releaseDelayOfInvalid;
    // The timer keeps the subscription alive until it has fired.
    state().removedDirectoriesReleaseTimers->addObject(zef::RunLoop::current().scheduleTimer(
        delay, zef::Repeats::no, [this, kept = zef::Ref(&subscription)](zef::Timer& timer) {
            _removeSubscriptionTimerAction(timer, *kept);
        }));
}

void ZEFFileManager::_removeSubscriptionTimerAction(
    zef::Timer& timer, ZEFDirectorySubscription& subscription)
{
    if (!subscription.numberOfSubscribers() || !subscription.isValid()) {
        auto& timers = *state().removedDirectoriesReleaseTimers;
        const auto index = timers.indexOfIdentical(&timer);
        if (index < timers.count())
            timers.removeObjectAtIndex(index);
        state().subscriptions->remove(subscription);
    }
    if (state().subscriptions->list().isEmpty())
        ZEF_killTimer();
}

bool ZEFFileManager::setAsynchronous(bool asynchronous)
{
    if (state().hadSubscribers)
        return false;
    state().asynchronous = asynchronous;
    return true;
}

bool ZEFFileManager::asynchronous() const
{
    return state().asynchronous;
}

void ZEFFileManager::setPollingInterval(double seconds)
{
    if (static_cast<double>(state().pollingInterval) == seconds)
        return;
    state().pollingInterval = static_cast<float>(seconds);
    ZEF_killTimer();
    if (!state().paused)
        ZEF_makeTimer();
}

float ZEFFileManager::pollingInterval() const
{
    return state().pollingInterval;
}

void ZEFFileManager::setPaused(bool paused)
{
    state().paused = paused;
    if (paused)
        ZEF_killTimer();
    else if (!state().timer)
        ZEF_makeTimer();
}

bool ZEFFileManager::isPaused() const
{
    return state().paused;
}

void ZEFFileManager::ZEF_makeTimer()
{
    if (state().timer || state().isShutDown)
        return;
    state().timer = zef::RunLoop::current().scheduleTimer(
        static_cast<double>(state().pollingInterval), zef::Repeats::yes,
        [this](zef::Timer&) { checkFilesystem(this); });
}

void ZEFFileManager::ZEF_killTimer()
{
    if (state().timer)
        state().timer->invalidate();
    state().timer = nullptr;
}

void ZEFFileManager::checkFilesystem(ZEFObject*)
{
    struct Found {
        zef::Ref<ZEFDirectorySubscription> subscription;
        zef::Ref<ZEFChangeArray> changes;
    };
    std::vector<Found> found;
    zef::FirstException exception;
    const auto check = [&](ZEFDirectorySubscription* subscription) {
        zef::Ref<ZEFChangeArray> changes;
        exception.guard([&] { subscription->checkDirectory(changes); });
        if (changes)
            found.push_back({ subscription, std::move(changes) });
    };
    {
        const zef::ChangeNotifier::Round round;
        // A hook may shut the manager down.
        const zef::Ref list(&state().subscriptions->list());
        exception.guard([&] { list->enumerate(check); });
    }
    // What was found was found: its subscribers hear of it even if something went wrong.
    for (const auto& entry : found)
        exception.guard([&] { entry.subscription->notifySubscribers(entry.changes.get()); });
    exception.rethrow();
}
