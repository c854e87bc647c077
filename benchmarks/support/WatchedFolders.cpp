// SPDX-License-Identifier: MIT
#include "benchmarks/support/WatchedFolders.h"

#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include <cmath>
#include <stdexcept>

class WatchedFolders::Subscriber final : public ZEFObject, public ZEFDirectorySubscriptionProtocol {
public:
    void directorySubscriptionFoundChanges(
        ZEFDirectorySubscription*, ZEFChangeArray* changes) override
    {
        _recordCount += changes->count();
    }

    std::size_t recordCount() const { return _recordCount; }

private:
    std::size_t _recordCount = 0;
};

WatchedFolders::WatchedFolders(const std::vector<std::string>& paths)
    : _subscriber(zef::makeRef<Subscriber>())
{
    zef::RunLoop::replaceCurrent(&_runLoop);
    auto* manager = ZEFFileManager::defaultFileManager();
    manager->pause();
    for (const auto& path : paths) {
        if (!manager->subscribeForPath(_subscriber.get(), path))
            throw std::runtime_error("can't watch " + path);
    }
    runTimers();
    poll();
    poll();
}

WatchedFolders::~WatchedFolders()
{
    ZEFFileManager::defaultFileManager()->unsubscribe(_subscriber.get());
    runTimers();
    zef::RunLoop::replaceCurrent(nullptr);
}

void WatchedFolders::poll()
{
    ZEFFileManager::defaultFileManager()->checkFilesystem(nullptr);
}

std::size_t WatchedFolders::recordsOfPoll()
{
    const auto before = _subscriber->recordCount();
    poll();
    return _subscriber->recordCount() - before;
}

void WatchedFolders::runTimers()
{
    for (double wait = 0; std::isfinite(wait = _runLoop.secondsUntilNextTimer());) {
        _clock.advance(wait);
        _runLoop.perform();
    }
}
