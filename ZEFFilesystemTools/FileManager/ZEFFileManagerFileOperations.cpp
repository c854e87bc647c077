// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "ZEFFilesystemTools/FileManager/ZEFFileManagerState.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"
#include "ZEFFilesystemTools/Platform/Trash/Trash.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include <cerrno>

namespace {

constexpr double pauseAfterTrashing = 0.3;

} // namespace

bool ZEFFileManager::moveFilesToTrash(const zef::Array<ZEFFileItem>* files)
{
    if (!ZEF_moveFilesToTrash(files))
        return false;
    zef::Clock::shared().sleep(pauseAfterTrashing);
    checkFilesystem(this);
    return true;
}

bool ZEFFileManager::ZEF_moveFilesToTrash(const zef::Array<ZEFFileItem>* files)
{
    state().trashRefusal = {};
    if (!files || files->isEmpty())
        return true;
    std::vector<zef::TrashEntry> entries;
    for (const auto& file : *files) {
        const auto* reference = file ? file->fsRef() : nullptr;
        if (!reference) {
            state().trashRefusal = { .index = entries.size(),
                .error = ENOENT,
                .reason = "nothing is known that leads to it" };
            return false;
        }
        // So that the item knows where its file is afterwards.
        file->ZEF_keepReference();
        entries.push_back({ *reference, file->url() });
    }
    const auto outcome = zef::Trash::shared().moveToTrash(entries, state().trashRefusal);
    if (outcome == zef::TrashOutcome::failed)
        zef::log("Move to trash produced error %d",
            numberOf(zef::fileErrorOfErrno(state().trashRefusal.error)));
    return outcome == zef::TrashOutcome::moved;
}

const zef::TrashRefusal& ZEFFileManager::lastTrashRefusal() const
{
    return state().trashRefusal;
}

zef::Ref<zef::Array<ZEFFileItem>> ZEFFileManager::filesInDirectory(ZEFFileItem* directory)
{
    // A subscriber that is told of the listing may have the subscription dropped.
    zef::Ref<ZEFDirectorySubscription> subscription = subscriptionForFile(directory);
    if (!subscription) {
        subscription = ZEFDirectorySubscription::initForSubscriber(
            nullptr, directory, state().fileClass, state().asynchronous);
    }
    if (!subscription)
        return nullptr;
    subscription->loadImmediately();
    return subscription->files();
}
