// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Ref.h"
#include "ZEFFilesystemTools/Platform/Threads/Mutex.h"

#include <cstdint>

class ZEFFileItem;
class ZEFFileTable;

/// The process-wide registry of file items: one table for each device, never freed.
///
/// `filesLock` guards it and serialises the factory.
class ZEFFileRegistry {
public:
    /// The table of `device`; null if there is none yet. Call with the lock held.
    static ZEFFileTable* table(std::uint32_t device);

    /// Makes a new, empty table the one of `device` and forgets the one before. Call with the lock
    /// held.
    static ZEFFileTable& replaceTable(std::uint32_t device);

    /// The registered item with these numbers, as it stands and unverified; null if there is none.
    /// Call without the lock.
    static zef::Ref<ZEFFileItem> item(std::uint32_t device, std::uint64_t inode);

    static zef::Mutex& filesLock();

    /// Puts `mutex` (borrowed) in the lock's place, for tests; null gives the real one back.
    static void replaceFilesLock(zef::Mutex* mutex);

    /// Holds the lock as long as it lives; logs it if that fails.
    class [[nodiscard]] Guard {
    public:
        Guard();
        ~Guard();
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

        bool isLocked() const { return _isLocked; }

    private:
        zef::Mutex& _mutex;
        bool _isLocked;
    };
};
