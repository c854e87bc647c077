// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "ZEFFilesystemTools/Platform/Text/Log.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionState.h"

#include <cassert>

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
    subscription->ZEF_scanDirectoryForUpdatedFiles(nullptr, asynchronous);
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
    : _state(std::make_unique<State>(*this, file, fileClass, asynchronous))
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
    assert(_state->threadChecker.isOnItsThread());
}

ZEFDirectorySubscription::State::State(ZEFDirectorySubscription& owner, ZEFFileItem& directory,
    const ZEFFileItemClass* classOfFiles, bool isAsynchronous)
    : subscription(owner)
    , folder{ &directory, directory.url() }
    , fileClass(classOfFiles)
    , asynchronous(isAsynchronous)
    , knownFiles(owner)
{
}

ZEFDirectorySubscription::State& ZEFDirectorySubscription::state() const
{
    assert(_state->threadChecker.isOnItsThread());
    return *_state;
}

void ZEFDirectorySubscription::subscribe(ZEFObject* subscriber)
{
    state().subscribers.add(subscriber);
}

std::int32_t ZEFDirectorySubscription::unsubscribe(ZEFObject* subscriber)
{
    state().subscribers.remove(subscriber);
    return numberOfSubscribers();
}

std::int32_t ZEFDirectorySubscription::numberOfSubscribers() const
{
    return static_cast<std::int32_t>(state().subscribers.count());
}

void ZEFDirectorySubscription::notifySubscribers(ZEFChangeArray* changes)
{
    const zef::Ref<ZEFDirectorySubscription> protectedThis(this);
    const zef::Ref<ZEFChangeArray> protectedChanges(changes);
    const auto& subscribers = state().subscribers;
    zef::FirstException exception;
    for (const auto& entry : subscribers.snapshot()) {
        if (subscribers.containsIdentical(entry.object))
            exception.guard(
                [&] { entry.subscriber->directorySubscriptionFoundChanges(this, changes); });
    }
    exception.rethrow();
}

zef::Ref<ZEFFileItemArray> ZEFDirectorySubscription::files() const
{
    const auto& known = state().knownFiles.all();
    auto files = zef::makeRef<ZEFFileItemArray>(known.count());
    for (std::size_t index = 0; index < known.endIndex(); ++index) {
        if (auto* item = known.objectAtIndex(index))
            files->addObject(item);
    }
    return files;
}

const std::string* ZEFDirectorySubscription::path() const
{
    return state().folder.directoryFile->path();
}

zef::FileURL ZEFDirectorySubscription::url() const
{
    return state().folder.lastKnownURL;
}

bool ZEFDirectorySubscription::isValid() const
{
    return state().folder.shouldCheck;
}

bool ZEFDirectorySubscription::isLoading() const
{
    return state().load.operation();
}

ZEFFileItem* ZEFDirectorySubscription::directoryFile() const
{
    auto* directory = state().folder.directoryFile.get();
    return directory->isValid() ? directory : nullptr;
}

std::string ZEFDirectorySubscription::description() const
{
    const auto url = this->url();
    return ZEFObject::description() + ", " + (url ? url.absoluteString() : "(null)");
}

void ZEFDirectorySubscription::ZEF_setURL(const zef::FileURL& url)
{
    state().folder.lastKnownURL = url;
}

void ZEFDirectorySubscription::checkDirectory()
{
    if (isLoading())
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
    if (!isLoading())
        return;
    const zef::Ref<ZEFDirectorySubscription> protectedThis(this);
    state().load.stopAtNextLook();
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
