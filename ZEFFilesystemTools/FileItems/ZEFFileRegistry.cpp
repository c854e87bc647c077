// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileNumbers.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileTable.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include <atomic>
#include <unordered_map>

namespace {

constexpr std::size_t tableCapacity = 10000;

// Keyed by the device number as a signed 32-bit integer; the tables live as long as the process.
std::unordered_map<std::int32_t, ZEFFileTable*>& files()
{
    static auto& instance = *new std::unordered_map<std::int32_t, ZEFFileTable*>;
    return instance;
}

std::atomic<zef::Mutex*> filesLockReplacement{ nullptr };

} // namespace

ZEFFileTable* ZEFFileRegistry::table(std::uint32_t device)
{
    auto found = files().find(static_cast<std::int32_t>(device));
    return found == files().end() ? nullptr : found->second;
}

ZEFFileTable& ZEFFileRegistry::replaceTable(std::uint32_t device)
{
    auto*& entry = files()[static_cast<std::int32_t>(device)];
    // Items of the table before still refer to it, so it stays in memory and within reach.
    static auto& forgotten = *new std::unordered_multimap<std::int32_t, ZEFFileTable*>;
    if (entry)
        forgotten.emplace(static_cast<std::int32_t>(device), entry);
    entry = new ZEFFileTable(tableCapacity);
    return *entry;
}

zef::Ref<ZEFFileItem> ZEFFileRegistry::item(std::uint32_t device, std::uint64_t inode)
{
    Guard guard;
    auto* itsTable = guard.isLocked() ? table(device) : nullptr;
    return itsTable ? itsTable->retainedItem(zef::registryKeyOfInode(inode)) : nullptr;
}

zef::Mutex& ZEFFileRegistry::filesLock()
{
    static auto& lock = zef::Mutex::makeImmortal();
    auto* replacement = filesLockReplacement.load(std::memory_order_acquire);
    return replacement ? *replacement : lock;
}

void ZEFFileRegistry::replaceFilesLock(zef::Mutex* mutex)
{
    filesLockReplacement.store(mutex, std::memory_order_release);
}

ZEFFileRegistry::Guard::Guard()
    : _mutex(filesLock())
{
    const int error = _mutex.lock();
    _isLocked = error == 0;
    if (error)
        zef::log("Error %d locking filesLock", error);
}

ZEFFileRegistry::Guard::~Guard()
{
    if (!_isLocked)
        return;
    const int error = _mutex.unlock();
    if (error)
        zef::log("Error %d unlocking filesLock", error);
}
