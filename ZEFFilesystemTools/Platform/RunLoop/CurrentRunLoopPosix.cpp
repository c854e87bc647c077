// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include <pthread.h>

namespace zef {
namespace {

// Plain pointers, which stay usable while the thread's other thread_local objects are destroyed; a
// thread-specific key destroys the loop after them. Neither happens to the main thread at exit.
thread_local RunLoop* ownRunLoop = nullptr;
thread_local RunLoop* replacementRunLoop = nullptr;

void destroyOwnRunLoop(void* runLoop)
{
    delete static_cast<RunLoop*>(runLoop);
    ownRunLoop = nullptr;
}

pthread_key_t makeRunLoopKey()
{
    pthread_key_t key{};
    pthread_key_create(&key, destroyOwnRunLoop);
    return key;
}

RunLoop* makeOwnRunLoop()
{
    static const auto key = makeRunLoopKey();
    ownRunLoop = new RunLoop;
    pthread_setspecific(key, ownRunLoop);
    return ownRunLoop;
}

} // namespace

RunLoop& RunLoop::current()
{
    if (replacementRunLoop)
        return *replacementRunLoop;
    return ownRunLoop ? *ownRunLoop : *makeOwnRunLoop();
}

void RunLoop::replaceCurrent(RunLoop* replacement)
{
    replacementRunLoop = replacement;
}

} // namespace zef
