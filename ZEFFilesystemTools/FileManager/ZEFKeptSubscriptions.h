// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/Objects/Array.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include <unordered_map>

/// The kept subscriptions: all of them in the order of creation, and the one of each folder.
class ZEFKeptSubscriptions {
public:
    ZEFKeptSubscriptions();

    zef::Array<ZEFDirectorySubscription>& list() { return *_directories; }

    /// The entry of the folder, borrowed; null if there is none, or if it is of another folder that
    /// had the same number.
    ZEFDirectorySubscription* subscriptionForFile(const ZEFFileItem& file) const;

    /// Adds to the list and becomes the folder's entry in place of any other.
    void add(ZEFFileItem& file, zef::Ref<ZEFDirectorySubscription>);

    /// Gives up the subscription, and its folder's entry while the folder is there.
    void remove(ZEFDirectorySubscription&);

private:
    // The list is given up before the table: members go the other way round.
    std::unordered_map<zef::Ref<ZEFFileItem>, zef::Ref<ZEFDirectorySubscription>, zef::ObjectHash,
        zef::ObjectEqual>
        _directoriesDict;
    zef::Ref<zef::Array<ZEFDirectorySubscription>> _directories;
};
