// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/FileManager/ZEFKeptSubscriptions.h"
#include "ZEFFilesystemTools/Platform/RunLoop/Timer.h"
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"
#include "ZEFFilesystemTools/Platform/Threads/ThreadChecker.h"

/// What is inside the file manager.
struct ZEF_INTERNAL ZEFFileManager::State {
    State();

    /// The item of what is there, made by the file class; null if there is nothing or no class.
    zef::Ref<ZEFFileItem> newFileItemForPath(std::string_view path) const;
    zef::Ref<ZEFFileItem> newFileItemForURL(const zef::FileURL& url) const;

    zef::Ref<zef::OperationQueue> utilityQueue = zef::makeRef<zef::OperationQueue>();
    /// Kept alive by the run loop while it is valid.
    zef::Ref<zef::Timer> timer;
    std::unique_ptr<ZEFKeptSubscriptions> subscriptions = std::make_unique<ZEFKeptSubscriptions>();
    zef::Ref<zef::Array<zef::Timer>> removedDirectoriesReleaseTimers;
    const ZEFFileItemClass* fileClass = &ZEFFileItem::classObject;
    bool asynchronous = false;
    bool madeFiles = false;
    bool hadSubscribers = false;
    float pollingInterval = 3.0F;
    bool paused = false;
    bool isShutDown = false;
    zef::TrashRefusal trashRefusal;
    [[no_unique_address]] zef::ThreadChecker threadChecker;
};
