// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFLoadQueue.h"

#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include <mutex>

namespace {

constexpr std::size_t loadsAtOnce = 64;

zef::Ref<zef::OperationQueue> madeQueue()
{
    auto queue = zef::makeRef<zef::OperationQueue>();
    queue->setMaxConcurrentOperationCount(loadsAtOnce);
    return queue;
}

struct Holder {
    std::mutex mutex;
    zef::Ref<zef::OperationQueue> queue = madeQueue();
};

Holder& holder()
{
    static auto& holder = *new Holder; // never destroyed: late threads may still ask
    return holder;
}

} // namespace

zef::OperationQueue* ZEFLoadQueue::queue()
{
    std::lock_guard lock(holder().mutex);
    return holder().queue.get();
}

void ZEFLoadQueue::begin()
{
    std::lock_guard lock(holder().mutex);
    if (!holder().queue)
        holder().queue = madeQueue();
}

void ZEFLoadQueue::end()
{
    auto* ending = queue();
    if (!ending)
        return;
    ending->waitUntilAllOperationsAreFinished();
    std::unique_lock lock(holder().mutex);
    const auto ended = std::move(holder().queue);
    lock.unlock();
}
