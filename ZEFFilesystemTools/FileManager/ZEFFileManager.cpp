// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/FileManager/ZEFFileManagerDirectories.h"
#include "ZEFFilesystemTools/Loading/ZEFLoadQueue.h"
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include <atomic>
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

ZEFFileManager::ZEFFileManager()
    : _utilityQueue(zef::makeRef<zef::OperationQueue>())
    , _directories(std::make_unique<Directories>())
    , _removedDirectoriesReleaseTimers(zef::makeRef<zef::Array<zef::Timer>>(releaseTimersHint))
{
    _utilityQueue->setMaxConcurrentOperationCount(
        utilitiesPerProcessor * zef::onlineProcessorCount());
    makeImmortal();
}

ZEFFileManager::~ZEFFileManager() = default;

zef::Ref<ZEFObject> ZEFFileManager::copy()
{
    return this;
}

bool ZEFFileManager::setFileClass(const ZEFFileItemClass* fileClass)
{
    if (_madeFiles)
        return false;
    _fileClass = fileClass;
    return true;
}

zef::OperationQueue* ZEFFileManager::operationQueue() const
{
    return ZEFLoadQueue::queue().get();
}

void ZEFFileManager::shutdown()
{
    if (std::exchange(_isShutDown, true))
        return;
    operationQueue()->setSuspended(true);
    _utilityQueue->setSuspended(true);
    if (_timer)
        _timer->invalidate();
    _directories = std::make_unique<Directories>();
    for (const auto& timer : *_removedDirectoriesReleaseTimers)
        timer->invalidate();
    _removedDirectoriesReleaseTimers->removeAllObjects();
    ZEFLoadQueue::end();
    _utilityQueue->waitUntilAllOperationsAreFinished();
    _utilityQueue = nullptr;
}

void ZEFFileManager::forgetInstance()
{
    auto* manager = _defaultFilesystem.load();
    if (!manager)
        return;
    manager->shutdown();
    _defaultFilesystem = nullptr;
    delete manager;
    ZEFLoadQueue::begin();
}
