// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/FileManager/ZEFFileManagerState.h"
#include "ZEFFilesystemTools/Loading/ZEFLoadQueue.h"

#include <atomic>
#include <cassert>
#include <mutex>
#include <utility>

namespace {

constexpr std::size_t utilitiesPerProcessor = 4;
constexpr std::size_t releaseTimersHint = 100;

std::atomic<ZEFFileManager*> _defaultFilesystem{ nullptr };

// The lock of the class; recursive, because making the instance through `defaultFileManager` goes
// through `alloc`.
std::recursive_mutex& classLock()
{
    static auto& mutex = *new std::recursive_mutex;
    return mutex;
}

} // namespace

const zef::Class ZEFFileManager::classObject{ "ZEFFileManager", &ZEFObject::classObject };

ZEFFileManager* ZEFFileManager::defaultFileManager()
{
    if (auto* manager = _defaultFilesystem.load(std::memory_order_acquire))
        return manager;
    std::lock_guard lock(classLock());
    if (!_defaultFilesystem) {
        auto* manager = alloc();
        _defaultFilesystem = manager->init();
    }
    return _defaultFilesystem;
}

ZEFFileManager* ZEFFileManager::alloc()
{
    std::lock_guard lock(classLock());
    if (_defaultFilesystem)
        return nullptr;
    _defaultFilesystem = new ZEFFileManager;
    return _defaultFilesystem;
}

ZEFFileManager* ZEFFileManager::init()
{
    return _defaultFilesystem;
}

ZEFFileManager::State::State()
    : removedDirectoriesReleaseTimers(zef::makeRef<zef::Array<zef::Timer>>(releaseTimersHint))
{
    utilityQueue->setMaxConcurrentOperationCount(
        utilitiesPerProcessor * zef::onlineProcessorCount());
}

zef::Ref<ZEFFileItem> ZEFFileManager::State::newFileItemForPath(std::string_view path) const
{
    return fileClass ? fileClass->newFileItemForPath(path) : nullptr;
}

zef::Ref<ZEFFileItem> ZEFFileManager::State::newFileItemForURL(const zef::FileURL& url) const
{
    return fileClass ? fileClass->newFileItemForURL(url) : nullptr;
}

ZEFFileManager::ZEFFileManager()
    : _state(std::make_unique<State>())
{
    makeImmortal();
}

ZEFFileManager::~ZEFFileManager() = default;

ZEFFileManager::State& ZEFFileManager::state() const
{
    assert(_state->threadChecker.isOnItsThread());
    return *_state;
}

zef::Ref<ZEFObject> ZEFFileManager::copy()
{
    return this;
}

const ZEFFileItemClass* ZEFFileManager::fileClass() const
{
    return state().fileClass;
}

bool ZEFFileManager::setFileClass(const ZEFFileItemClass* fileClass)
{
    if (state().madeFiles)
        return false;
    state().fileClass = fileClass;
    return true;
}

zef::OperationQueue* ZEFFileManager::operationQueue() const
{
    return ZEFLoadQueue::queue().get();
}

zef::OperationQueue* ZEFFileManager::utilityQueue() const
{
    return _state->utilityQueue.get();
}

void ZEFFileManager::shutdown()
{
    auto& ending = state();
    if (std::exchange(ending.isShutDown, true))
        return;
    operationQueue()->setSuspended(true);
    ending.utilityQueue->setSuspended(true);
    if (ending.timer)
        ending.timer->invalidate();
    ending.subscriptions = std::make_unique<ZEFKeptSubscriptions>();
    for (const auto& timer : *ending.removedDirectoriesReleaseTimers)
        timer->invalidate();
    ending.removedDirectoriesReleaseTimers->removeAllObjects();
    ZEFLoadQueue::end();
    ending.utilityQueue->waitUntilAllOperationsAreFinished();
    ending.utilityQueue = nullptr;
}

void ZEFFileManager::forgetInstance()
{
    // Made if there is none yet: loads may run without one.
    auto* manager = defaultFileManager();
    manager->shutdown();
    _defaultFilesystem = nullptr;
    delete manager;
    ZEFLoadQueue::begin();
}
