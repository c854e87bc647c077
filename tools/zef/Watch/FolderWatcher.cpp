// SPDX-License-Identifier: MIT
#include "tools/zef/Watch/FolderWatcher.h"

#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "tools/zef/FileArgument.h"
#include "tools/zef/Output.h"

#include <algorithm>

namespace tool {

FolderWatcher::FolderWatcher(ChangeView& view, Write write)
    : _view(view)
    , _write(std::move(write))
{
}

FolderWatcher::~FolderWatcher()
{
    ZEFFileManager::defaultFileManager()->unsubscribe(this);
}

bool FolderWatcher::watch(const std::string& path)
{
    if (const auto reason = reasonNotToWatch(path); !reason.empty()) {
        complain(path, reason);
        return false;
    }
    auto* subscription = ZEFFileManager::defaultFileManager()->subscribeForPath(
        this, pathToWatch(path));
    if (!subscription) {
        const auto reason = reasonNotToWatch(path);
        complain(path, reason.empty() ? "it can't be watched" : reason);
        return false;
    }
    if (find(subscription))
        return true;
    _folders.push_back(std::make_unique<Folder>(
        Folder{ WatchedFolder(*subscription), subscription->isLoading() }));
    _write(_view.textOfFolder(_folders.back()->folder));
    return true;
}

bool FolderWatcher::hasFolders()
{
    std::erase_if(_folders, [this](const auto& folder) {
        if (folder->folder.isAlive())
            return false;
        ZEFFileManager::defaultFileManager()->unsubscribeForSubscription(
            this, &folder->folder.subscription());
        return true;
    });
    return !_folders.empty();
}

void FolderWatcher::directorySubscriptionFoundChanges(
    ZEFDirectorySubscription* subscription, ZEFChangeArray* changes)
{
    auto* folder = find(subscription);
    if (!folder)
        return;
    _write(_view.textOfChanges(folder->folder, *changes));
    folder->folder.noteChanges(*changes);
    if (folder->isLoading && !subscription->isLoading()) {
        folder->isLoading = false;
        _write(_view.textOfLoaded(folder->folder));
    }
}

FolderWatcher::Folder* FolderWatcher::find(const ZEFDirectorySubscription* subscription)
{
    const auto found = std::find_if(_folders.begin(), _folders.end(),
        [=](const auto& folder) { return &folder->folder.subscription() == subscription; });
    return found == _folders.end() ? nullptr : found->get();
}

} // namespace tool
