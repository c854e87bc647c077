// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"

#include "ZEFFilesystemTools/Loading/ZEFLoadQueue.h"
#include "ZEFFilesystemTools/Platform/Objects/LetOutlive.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr double updateInterval = 0.1;

} // namespace

const zef::Class ZEFAsynchronousFileLoader::classObject{ "ZEFAsynchronousFileLoader",
    &ZEFObject::classObject };

ZEFAsynchronousFileLoader::ZEFAsynchronousFileLoader(ZEFObject* delegate)
    : _delegate(delegate)
    , _finishDelegate(zef::protocolCast<ZEFAsynchronousFileLoaderDelegate>(delegate))
    , _progressDelegate(zef::protocolCast<ZEFAsynchronousFileLoaderProgressDelegate>(delegate))
    , _failureDelegate(zef::protocolCast<ZEFAsynchronousFileLoaderFailureDelegate>(delegate))
    , _loadingArrayLock(_fileLoadOperation->loadingArrayLock())
    , _loadingArray(_fileLoadOperation->loadingArray())
{
}

ZEFAsynchronousFileLoader::~ZEFAsynchronousFileLoader()
{
    _fileLoadOperation->cancel();
    stopTimer();
}

void ZEFAsynchronousFileLoader::setFileFilter(zef::Ref<ZEFFileFilter> filter)
{
    _fileLoadOperation->setFileFilter(std::move(filter));
}

void ZEFAsynchronousFileLoader::setDirectoryFilter(zef::Ref<ZEFDirectoryFilter> filter)
{
    _fileLoadOperation->setDirectoryFilter(std::move(filter));
}

void ZEFAsynchronousFileLoader::startWithDirectory(zef::Ref<ZEFFileItem> directory)
{
    if (!mayStart())
        return;
    _fileLoadOperation->setLoadingDirectory(std::move(directory));
    start();
}

void ZEFAsynchronousFileLoader::startRecursivelyWithFilesToDepth(
    const ZEFFileItemArray* files, std::ptrdiff_t depth)
{
    if (!mayStart())
        return;
    _fileLoadOperation->setRecursive(true);
    _fileLoadOperation->setFilesToIterate(files);
    _fileLoadOperation->setDepth(depth);
    start();
}

void ZEFAsynchronousFileLoader::start()
{
    _operationIsRunning = true;
    _operationWasStarted = true;
    zef::letOutlive(_loadingArrayLock.get(), "the lock outlives every loader that was started");
    zef::letOutlive(_loadingArray.get(), "what was found outlives every loader that was started");
    _loadingArrayLock = _fileLoadOperation->loadingArrayLock();
    _loadingArray = _fileLoadOperation->loadingArray();
    if (const auto queue = ZEFLoadQueue::queue()) {
        queue->addOperation(_fileLoadOperation);
    } else {
        // After the shutdown, as what was on the queue then: it ends without having begun.
        _fileLoadOperation->cancel();
        _fileLoadOperation->start();
    }
    startTimer();
}

void ZEFAsynchronousFileLoader::startTimer()
{
    if (_updateTimer)
        return;
    _updateTimer = zef::RunLoop::current().scheduleTimer(updateInterval, zef::Repeats::yes,
        [self = zef::Ref<ZEFAsynchronousFileLoader>(this)](
            zef::Timer& timer) { self->checkLoadStatus(&timer); });
}

void ZEFAsynchronousFileLoader::stopTimer()
{
    if (const auto timer = std::exchange(_updateTimer, nullptr))
        timer->invalidate();
}

void ZEFAsynchronousFileLoader::cancel()
{
    if (!_operationIsRunning)
        return;
    const zef::Ref<ZEFAsynchronousFileLoader> protectedThis(this);
    _fileLoadOperation->cancel();
    stopTimer();
    _operationIsRunning = false;
}

void ZEFAsynchronousFileLoader::checkLoadStatus(zef::Timer*)
{
    const zef::Ref<ZEFAsynchronousFileLoader> protectedThis(this);
    reportProgress();
    // Asked once, so that what fails after the question is reported before the end too.
    const bool isFinished = _fileLoadOperation->isFinished();
    reportFailures(isFinished);
    // The delegate may have cancelled it.
    if (!_operationIsRunning || !isFinished)
        return;
    stopTimer();
    _operationIsRunning = false;
    _operationCompleted = true;
    if (_finishDelegate)
        _finishDelegate->asynchronousFileLoaderFinishedFindingFiles(this, _loadingArray.get());
}

// Never waits for the thread that loads.
void ZEFAsynchronousFileLoader::reportProgress()
{
    if (!_progressDelegate || !_loadingArrayLock->tryLock())
        return;
    const auto count = _loadingArray->count();
    const zef::Ref<ZEFFileItem> latestFile = count ? _loadingArray->objectAtIndex(count - 1)
                                                   : nullptr;
    _loadingArrayLock->unlock();
    _progressDelegate->asynchronousFileLoaderUpdatedNumberOfFilesFound(
        this, static_cast<std::uint32_t>(count), latestFile.get());
}

// Those that are left when the delegate throws, or looks at the load itself, are reported later.
void ZEFAsynchronousFileLoader::reportFailures(bool isFinished)
{
    if (!_failureDelegate)
        return;
    takeFailures(isFinished);
    while (_operationIsRunning && !_failures.empty()) {
        const auto failure = std::move(_failures.front());
        _failures.pop_front();
        _failureDelegate->asynchronousFileLoaderFailedToListDirectory(
            this, failure.directory.get(), failure.error);
    }
}

// Never waits for the thread that loads; once that is done, nobody else has to do with failures.
void ZEFAsynchronousFileLoader::takeFailures(bool isFinished)
{
    if (!isFinished && !_loadingArrayLock->tryLock())
        return;
    auto failures = _fileLoadOperation->takeFailures();
    if (!isFinished)
        _loadingArrayLock->unlock();
    std::move(failures.begin(), failures.end(), std::back_inserter(_failures));
}
