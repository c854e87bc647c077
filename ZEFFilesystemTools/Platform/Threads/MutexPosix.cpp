// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/Mutex.h"

#include <pthread.h>

namespace zef {
namespace {

class PosixMutex final : public Mutex {
public:
    int lock() override { return pthread_mutex_lock(&_mutex); }
    int unlock() override { return pthread_mutex_unlock(&_mutex); }

private:
    pthread_mutex_t _mutex = PTHREAD_MUTEX_INITIALIZER;
};

} // namespace

Mutex& Mutex::makeImmortal()
{
    return *new PosixMutex;
}

} // namespace zef
