// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/FileManager/ZEFFileManagerDirectories.h"
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"
#include "ZEFFilesystemTools/Platform/Objects/FirstException.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

namespace {

constexpr double releaseDelay = 30.0;
constexpr double releaseDelayOfInvalid = 0.0;

} // namespace

ZEFDirectorySubscription* ZEFFileManager::subscribeForFile(ZEFObject* subscriber, ZEFFileItem* file)
{
    if (!file || _isShutDown)
        return nullptr;
    auto* subscription = subscriptionForFile(file);
    if (subscription && subscription->isValid())
        subscription->subscribe(subscriber);
    else
        subscription = makeSubscription(subscriber, *file);
    _hadSubscribers = true;
    _madeFiles = true;
    return subscription;
}

ZEFDirectorySubscription* ZEFFileManager::makeSubscription(ZEFObject* subscriber, ZEFFileItem& file)
{
    auto made = ZEFDirectorySubscription::initForSubscriber(
        subscriber, &file, _fileClass, _asynchronous);
    if (!made)
        return nullptr;
    auto* subscription = made.get();
    _directories->add(file, std::move(made));
    if (!_timer && !_paused)
        ZEF_makeTimer();
    return subscription;
}

ZEFDirectorySubscription* ZEFFileManager::subscribeForPath(
    ZEFObject* subscriber, std::string_view path)
{
    const auto file = _fileClass ? _fileClass->newFileItemForPath(path) : nullptr;
    auto* subscription = subscribeForFile(subscriber, file.get());
    _madeFiles = true;
    return subscription;
}

ZEFDirectorySubscription* ZEFFileManager::subscribeForURL(
    ZEFObject* subscriber, const zef::FileURL& url)
{
    const auto file = _fileClass ? _fileClass->newFileItemForURL(url) : nullptr;
    auto* subscription = subscribeForFile(subscriber, file.get());
    _madeFiles = true;
    return subscription;
}

void ZEFFileManager::unsubscribeForFile(ZEFObject* subscriber, ZEFFileItem* file)
{
    unsubscribeForSubscription(subscriber, subscriptionForFile(file));
}

void ZEFFileManager::unsubscribeForPath(ZEFObject* subscriber, std::string_view path)
{
    const auto file = _fileClass ? _fileClass->newFileItemForPath(path) : nullptr;
    unsubscribeForFile(subscriber, file.get());
    _madeFiles = true;
}

void ZEFFileManager::unsubscribeForURL(ZEFObject* subscriber, const zef::FileURL& url)
{
    const auto file = _fileClass ? _fileClass->newFileItemForURL(url) : nullptr;
    unsubscribeForFile(subscriber, file.get());
    _madeFiles = true;
}

void ZEFFileManager::unsubscribeForSubscription(
    ZEFObject* subscriber, ZEFDirectorySubscription* subscription)
{
    if (subscription && !subscription->unsubscribe(subscriber))
        scheduleRelease(*subscription);
}

void ZEFFileManager::unsubscribe(ZEFObject* subscriber)
{
    const zef::Ref list(&_directories->list());
    list->enumerate([&](ZEFDirectorySubscription* subscription) {
        if (!subscription->unsubscribe(subscriber))
            scheduleRelease(*subscription);
    });
}

ZEFDirectorySubscription* ZEFFileManager::subscriptionForFile(const ZEFFileItem* file) const
{
    return file ? _directories->subscriptionForFile(*file) : nullptr;
}

std::vector<ZEFDirectorySubscription*> ZEFFileManager::subscriptions() const
{
    std::vector<ZEFDirectorySubscription*> result;
    for (const auto& subscription : _directories->list())
        result.push_back(subscription.get());
    return result;
}

void ZEFFileManager::scheduleRelease(ZEFDirectorySubscription& subscription)
{
    if (_isShutDown)
        return;
    const auto delay = subscription.isValid() ? releaseDelay : releaseDelayOfInvalid;
    // The timer keeps the subscription alive until it has fired.
    _removedDirectoriesReleaseTimers->addObject(zef::RunLoop::current().scheduleTimer(
        delay, zef::Repeats::no, [this, kept = zef::Ref(&subscription)](zef::Timer& timer) {
            _removeSubscriptionTimerAction(timer, *kept);
        }));
}

void ZEFFileManager::_removeSubscriptionTimerAction(
    zef::Timer& timer, ZEFDirectorySubscription& subscription)
{
    if (!subscription.numberOfSubscribers() || !subscription.isValid()) {
        auto& timers = *_removedDirectoriesReleaseTimers;
        const auto index = timers.indexOfIdentical(&timer);
        if (index < timers.count())
            timers.removeObjectAtIndex(index);
        _directories->remove(subscription);
    }
    if (_directories->list().isEmpty())
        ZEF_killTimer();
}

bool ZEFFileManager::setAsynchronous(bool asynchronous)
{
    if (_hadSubscribers)
        return false;
    _asynchronous = asynchronous;
    return true;
}

void ZEFFileManager::setPollingInterval(double seconds)
{
    if (static_cast<double>(_pollingInterval) == seconds)
        return;
    _pollingInterval = static_cast<float>(seconds);
    ZEF_killTimer();
    if (!_paused)
        ZEF_makeTimer();
}

void ZEFFileManager::setPaused(bool paused)
{
    _paused = paused;
    if (paused)
        ZEF_killTimer();
    else if (!_timer)
        ZEF_makeTimer();
}

void ZEFFileManager::ZEF_makeTimer()
{
    if (_timer || _isShutDown)
        return;
    _timer = zef::RunLoop::current().scheduleTimer(static_cast<double>(_pollingInterval),
        zef::Repeats::yes, [this](zef::Timer&) { checkFilesystem(this); });
}

void ZEFFileManager::ZEF_killTimer()
{
    if (_timer)
        _timer->invalidate();
    _timer = nullptr;
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
        const zef::Ref list(&_directories->list());
        exception.guard([&] { list->enumerate(check); });
    }
    // What was found was found: its subscribers hear of it even if something went wrong.
    for (const auto& entry : found)
        exception.guard([&] { entry.subscription->notifySubscribers(entry.changes.get()); });
    exception.rethrow();
}
