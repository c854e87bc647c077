// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include "tests/support/LoopFixture.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

/// A new file manager, whose items report their events, on the run loop that the test steps.
class ManagerFixture : public LoopFixture {
protected:
    ManagerFixture() { manager.setFileClass(&ReportingItem::classObject); }

    /// The subscription of a folder.
    ZEFDirectorySubscription* subscribe(
        RecordingSubscriber& subscriber, std::string_view name = "watched")
    {
        return manager.subscribeForURL(&subscriber, folder.folderUrl(name));
    }

    /// Whether the manager keeps this very subscription.
    bool keeps(const ZEFDirectorySubscription* subscription) const
    {
        const auto all = manager.subscriptions();
        return std::find(all.begin(), all.end(), subscription) != all.end();
    }

    /// One poll.
    void poll() { manager.checkFilesystem(nullptr); }

    /// Makes folders with these names in the temporary folder.
    void makeFolders(std::initializer_list<const char*> names)
    {
        for (const auto* name : names)
            folder.makeFolder(name);
    }

    ZEFFileManager& manager = *ZEFFileManager::defaultFileManager();
};
