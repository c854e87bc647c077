// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFLoadQueue.h"

#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

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
    return zef::immortal<Holder>();
}

} // namespace

zef::Ref<zef::OperationQueue> ZEFLoadQueue::queue()
{
    std::lock_guard lock(holder().mutex);
    return holder().queue;
}

void ZEFLoadQueue::begin()
{
    std::lock_guard lock(holder().mutex);
    if (!holder().queue)
        holder().queue = madeQueue();
}

void ZEFLoadQueue::end()
{
    const auto ending = queue();
    if (!ending)
        return;
    ending->waitUntilAllOperationsAreFinished();
    std::lock_guard lock(holder().mutex);
    holder().queue = nullptr;
}
