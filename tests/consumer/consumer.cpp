// SPDX-License-Identifier: MIT

// A host of the installed library that uses what crosses the border between the two: its own item
// class and subscriber, a cast to a protocol, an exception, a replaced service, a thread. Works in
// the empty folder that it is given, and fails when anything is not as it should be.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include <ZEFFilesystemTools/ZEFFilesystemTools.h>

namespace {

void expect(bool isRight, const char* what)
{
    if (isRight)
        return;
    std::fprintf(stderr, "consumer: wrong: %s\n", what);
    std::exit(1);
}

class HostItem final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    using ZEFFileItem::ZEFFileItem;

    void updateForEvent(const ZEFChangeRecord* record) override
    {
        ++_events;
        ZEFFileItem::updateForEvent(record);
    }

    int events() const { return _events; }

private:
    int _events = 0;
};

const ZEFFileItemClass HostItem::classObject(
    "HostItem", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<HostItem>);

class Subscriber final : public ZEFObject,
                         public ZEFDirectorySubscriptionProtocol,
                         public ZEFAsynchronousFileLoaderDelegate {
public:
    void directorySubscriptionFoundChanges(
        ZEFDirectorySubscription*, ZEFChangeArray* changes) override
    {
        changes->enumerate([this](ZEFChangeRecord* record) { ++_counts[record->event()]; });
    }

    void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader*, ZEFFileItemArray* files) override
    {
        _found = files->count();
        files->removeAllObjects();
        zef::RunLoop::current().stop();
    }

    int count(ZEFFileEvent event) { return _counts[event]; }
    std::size_t found() const { return _found; }

private:
    std::map<ZEFFileEvent, int> _counts;
    std::size_t _found = 0;
};

class FrozenClock final : public zef::Clock {
public:
    zef::Date now() override { return zef::Date(1000); }
    double monotonicSeconds() override { return 7; }
    void sleep(double) override { ++_sleeps; }
    int sleeps() const { return _sleeps; }

private:
    int _sleeps = 0;
};

void write(const std::string& path)
{
    std::ofstream(path) << path;
}

void checkSubscription(ZEFFileManager& manager, const std::string& folder)
{
    write(folder + "/first");
    auto subscriber = zef::makeRef<Subscriber>();
    auto* subscription = manager.subscribeForPath(subscriber.get(), folder);
    expect(subscription, "the folder can be subscribed to");
    expect(subscription->files()->count() == 1, "the folder has one file");
    zef::Ref<ZEFFileItem> first = subscription->files()->objectAtIndex(0);
    auto* own = zef::downcast<HostItem>(first.get());
    expect(own, "items are of the host's class");

    write(folder + "/second");
    expect(!std::rename((folder + "/first").c_str(), (folder + "/third").c_str()), "renaming");
    manager.checkFilesystem(nullptr);
    expect(subscriber->count(ZEFFileEvent::appeared) == 1, "the second file appeared");
    expect(subscriber->count(ZEFFileEvent::renamed) == 1, "the first file was renamed");
    expect(own->events() > 0, "the host's item was told");
    expect(first->currentPath() == folder + "/third", "the item follows its file");
    manager.unsubscribe(subscriber.get());
}

void checkCasts()
{
    auto subscriber = zef::makeRef<Subscriber>();
    auto number = zef::Ref<ZEFObject>(zef::makeRef<zef::Number>(3));
    expect(zef::protocolCast<ZEFDirectorySubscriptionProtocol>(subscriber.get()),
        "the subscriber conforms to its protocol");
    expect(!zef::protocolCast<ZEFDirectorySubscriptionProtocol>(number.get()),
        "a number conforms to no protocol");
    zef::Ref<ZEFObject> item = ZEFFileItem::classObject.newFileItemForPath("/dev/null");
    expect(dynamic_cast<ZEFFileItem*>(item.get()), "an item that the library made is one");
    expect(zef::downcast<ZEFFileItem>(item.get()), "its class record says so too");
    expect(!zef::downcast<HostItem>(item.get()), "it is not an item of the host's class");
}

// Thrown in the library, where the host's hook changes the array that is walked.
class ChangingItem final : public ZEFFileItem {
public:
    using ZEFFileItem::ZEFFileItem;
    void loadDataIntoArchive(ZEFArchiveDictionary*) override
    {
        array->addObject(zef::Ref<ZEFFileItem>(this));
    }
    static inline zef::Array<ZEFFileItem>* array = nullptr;
};

const ZEFFileItemClass changingClass(
    "ChangingItem", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<ChangingItem>);

void checkException(const std::string& folder)
{
    write(folder + "/changing");
    auto array = zef::makeRef<zef::Array<ZEFFileItem>>();
    array->addObject(changingClass.newFileItemForPath(folder + "/changing"));
    ChangingItem::array = array.get();
    bool wasCaught = false;
    try {
        changingClass.archiveDictionariesForFileItems(array.get());
    } catch (const zef::MutationError&) {
        wasCaught = true;
    }
    expect(wasCaught, "the library's exception arrives as what it is");
    array->removeAllObjects();
}

void checkService(ZEFFileManager& manager, const std::string& folder)
{
    FrozenClock clock;
    zef::Clock::replaceShared(&clock);
    write(folder + "/rubbish");
    auto files = zef::makeRef<zef::Array<ZEFFileItem>>();
    files->addObject(ZEFFileItem::classObject.newFileItemForPath(folder + "/rubbish"));
    const bool isMoved = manager.moveFilesToTrash(files.get());
    expect(isMoved, manager.lastTrashRefusal().reason.c_str());
    expect(clock.sleeps() == 1, "the library uses the clock that the host put in place");
    zef::Clock::replaceShared(nullptr);
    expect(!std::ifstream(folder + "/rubbish"), "the file is in the trash");
}

void checkLoader(const std::string& folder)
{
    auto delegate = zef::makeRef<Subscriber>();
    auto loader = zef::makeRef<ZEFAsynchronousFileLoader>(delegate.get());
    loader->setFileFilter(ZEFFileFilter::filter());
    loader->startWithDirectory(ZEFFileItem::classObject.newFileItemForPath(folder));
    zef::RunLoop::current().run(zef::RunLoopMode::defaultMode, 60);
    expect(loader->isComplete() && delegate->found() == 3, "the loader finds three files");
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2)
        return 2;
    const std::string folder = arguments[1];
    auto* manager = ZEFFileManager::defaultFileManager();
    expect(manager->setFileClass(&HostItem::classObject), "the host's class is taken");
    checkSubscription(*manager, folder);
    checkCasts();
    checkException(folder);
    checkService(*manager, folder);
    checkLoader(folder);
    manager->shutdown();
    std::puts("consumer: everything is as it should be");
}
