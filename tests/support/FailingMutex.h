// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"

#include <mutex>

/// A lock that fails with the errno values that a test says; stands in for the registry's while it
/// lives. It locks in fact unless it fails to.
class FailingMutex final : public zef::Mutex {
public:
    FailingMutex(int lockError, int unlockError)
        : _lockError(lockError)
        , _unlockError(unlockError)
    {
        ZEFFileRegistry::replaceFilesLock(this);
    }

    ~FailingMutex() override { ZEFFileRegistry::replaceFilesLock(nullptr); }

    int lock() override
    {
        if (!_lockError)
            _mutex.lock();
        return _lockError;
    }

    int unlock() override
    {
        _mutex.unlock();
        return _unlockError;
    }

private:
    std::mutex _mutex;
    int _lockError;
    int _unlockError;
};
