// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "ZEFFilesystemTools/Platform/Objects/FirstException.h"
#include "ZEFFilesystemTools/Platform/Objects/LetOutlive.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"

namespace {

constexpr std::size_t knownItemsCapacity = 200;
constexpr std::size_t knownFoldersCapacity = 100;

} // namespace

const zef::Class ZEFDirectorySubscription::classObject{ "ZEFDirectorySubscription",
    &ZEFObject::classObject };

zef::Ref<ZEFDirectorySubscription> ZEFDirectorySubscription::initForSubscriber(
    ZEFObject* subscriber, ZEFFileItem* file, const ZEFFileItemClass* fileClass, bool asynchronous)
{
    if (!file || !file->isBasicDirectory() || !file->isValid()) {
        const auto url = file ? file->url() : zef::FileURL();
        zef::log("The path %s does not point to a valid directory, so an ZEFDirectorySubscription "
                 "object cannot be created.",
            url ? url.absoluteString().c_str() : "(null)");
        return nullptr;
    }
    auto subscription = zef::Ref<ZEFDirectorySubscription>::adopt(
        new ZEFDirectorySubscription(subscriber, *file, fileClass, asynchronous));
    subscription->ZEF_scanDirectoryForUpdatedFiles(nullptr, subscription->_asynchronous);
    return subscription;
}

zef::Ref<ZEFDirectorySubscription> ZEFDirectorySubscription::initForSubscriber(
    ZEFObject* subscriber, ZEFFileItem* file, bool asynchronous)
{
    return initForSubscriber(subscriber, file, &ZEFFileItem::classObject, asynchronous);
}

zef::Ref<ZEFDirectorySubscription> ZEFDirectorySubscription::initForSubscriber(
    ZEFObject* subscriber, ZEFFileItem* file)
{
    return initForSubscriber(subscriber, file, false);
}

ZEFDirectorySubscription::ZEFDirectorySubscription(
    ZEFObject* subscriber, ZEFFileItem& file, const ZEFFileItemClass* fileClass, bool asynchronous)
    : _lastKnownURL(file.url())
    , _directoryFile(&file)
    , _directoryInfo(knownItemsCapacity)
    , _directoryInfoDirectoriesOnly(knownFoldersCapacity)
    , _fileClass(fileClass)
    , _asynchronous(asynchronous)
{
    file.initKQueue();
    // A subscription that died left its record with the item; one at the same address must not take
    // that for its own.
    file.removeFileObserver(this);
    // From the start, not with the first question: whoever asks before that must not take an event
    // away from this subscription.
    file.registerFileObserver(this);
    subscribe(subscriber);
}

ZEFDirectorySubscription::~ZEFDirectorySubscription()
{
    _lastKnownURL = nullptr;
    for (std::size_t index = 0; index < _directoryInfo.endIndex(); ++index) {
        if (auto* item = _directoryInfo.objectAtIndex(index))
            item->removeFileObserver(this);
    }
    if (_asyncLoadingCheckTimer)
        _asyncLoadingCheckTimer->invalidate();
    if (_referenceTimer)
        _referenceTimer->invalidate();
    zef::letOutlive(_currentLoadOperation.get(),
        "a load that runs is neither cancelled nor released with its subscription");
}

void ZEFDirectorySubscription::subscribe(ZEFObject* subscriber)
{
    _subscribers.add(subscriber);
}

std::int32_t ZEFDirectorySubscription::unsubscribe(ZEFObject* subscriber)
{
    _subscribers.remove(subscriber);
    return numberOfSubscribers();
}

std::int32_t ZEFDirectorySubscription::numberOfSubscribers() const
{
    return static_cast<std::int32_t>(_subscribers.count());
}

void ZEFDirectorySubscription::notifySubscribers(ZEFChangeArray* changes)
{
    const zef::Ref<ZEFDirectorySubscription> protectedThis(this);
    const zef::Ref<ZEFChangeArray> protectedChanges(changes);
    zef::FirstException exception;
    for (const auto& entry : _subscribers.snapshot()) {
        if (_subscribers.containsIdentical(entry.object))
            exception.guard(
                [&] { entry.subscriber->directorySubscriptionFoundChanges(this, changes); });
    }
    exception.rethrow();
}

zef::Ref<ZEFFileItemArray> ZEFDirectorySubscription::files() const
{
    auto files = zef::makeRef<ZEFFileItemArray>(_directoryInfo.count());
    for (std::size_t index = 0; index < _directoryInfo.endIndex(); ++index) {
        if (auto* item = _directoryInfo.objectAtIndex(index))
            files->addObject(item);
    }
    return files;
}

const std::string* ZEFDirectorySubscription::path() const
{
    return _directoryFile->path();
}

ZEFFileItem* ZEFDirectorySubscription::directoryFile() const
{
    return _directoryFile->isValid() ? _directoryFile.get() : nullptr;
}

std::string ZEFDirectorySubscription::description() const
{
    return ZEFObject::description() + ", "
        + (_lastKnownURL ? _lastKnownURL.absoluteString() : "(null)");
}

void ZEFDirectorySubscription::ZEF_setURL(const zef::FileURL& url)
{
    _lastKnownURL = url;
}

void ZEFDirectorySubscription::checkDirectory()
{
    if (_currentLoadOperation)
        return;
    const zef::Ref<ZEFDirectorySubscription> protectedThis(this);
    zef::Ref<ZEFChangeArray> changes;
    zef::FirstException exception;
    exception.guard([&] { checkDirectory(changes); });
    if (changes)
        exception.guard([&] { notifySubscribers(changes.get()); });
    exception.rethrow();
}

void ZEFDirectorySubscription::loadImmediately()
{
    if (!_currentLoadOperation)
        return;
    const zef::Ref<ZEFDirectorySubscription> protectedThis(this);
    _stopLoading = true;
    ZEF_checkAsyncLoadingQueue();
    notifyOfCheck();
}

void ZEFDirectorySubscription::notifyOfCheck()
{
    zef::Ref<ZEFChangeArray> changes;
    zef::FirstException exception;
    exception.guard([&] { checkDirectory(changes); });
    if (!changes)
        changes = zef::makeRef<ZEFChangeArray>();
    exception.guard([&] { notifySubscribers(changes.get()); });
    exception.rethrow();
}
