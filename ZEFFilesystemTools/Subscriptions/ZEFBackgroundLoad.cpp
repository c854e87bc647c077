// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Subscriptions/ZEFBackgroundLoad.h"

#include "ZEFFilesystemTools/Loading/ZEFLoadQueue.h"
#include "ZEFFilesystemTools/Platform/Objects/LetOutlive.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

namespace {

constexpr double firstLookDelay = 0.1;
constexpr double lookInterval = 0.5;

} // namespace

ZEFBackgroundLoad::~ZEFBackgroundLoad()
{
    if (_asyncLoadingCheckTimer)
        _asyncLoadingCheckTimer->invalidate();
    zef::letOutlive(_currentLoadOperation.get(),
        "a load that runs is neither cancelled nor released with its subscription");
}

void ZEFBackgroundLoad::begin(zef::Ref<ZEFFileItem> directory, zef::Timer::Action look)
{
    auto operation = zef::makeRef<ZEFFileLoadOperation>();
    operation->setLoadingDirectory(std::move(directory));
    _asyncLoadingLock = operation->loadingArrayLock();
    _asyncLoadingQueue = operation->loadingArray();
    _currentLoadOperation = operation;
    operation->setQueuePriority(zef::QueuePriority::high);
    if (!_asyncLoadingCheckTimer) {
        _asyncLoadingCheckTimer = zef::makeRef<zef::Timer>(
            firstLookDelay, lookInterval, zef::Repeats::yes, std::move(look));
        zef::RunLoop::current().addTimer(_asyncLoadingCheckTimer, zef::TimerModes::common);
    }
    if (const auto queue = ZEFLoadQueue::queue())
        queue->addOperation(std::move(operation));
}

void ZEFBackgroundLoad::close()
{
    _asyncLoadingCheckTimer->invalidate();
    _asyncLoadingCheckTimer = nullptr;
    _asyncLoadingQueue = nullptr;
    _asyncLoadingLock = nullptr;
    _currentLoadOperation = nullptr;
}

std::optional<ZEFBackgroundLoad::Findings> ZEFBackgroundLoad::tryTake()
{
    if (!_asyncLoadingLock->tryLock())
        return std::nullopt;
    auto findings = takeRest();
    _asyncLoadingLock->unlock();
    return findings;
}

ZEFBackgroundLoad::Findings ZEFBackgroundLoad::takeRest()
{
    return { _currentLoadOperation->takeSightings(), _asyncLoadingQueue->takeAllObjects() };
}
