// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"

#include <mutex>

/// A mutex that fails with the errno values that the test sets, and else really locks. Replaces the
/// registry's while it lives.
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
