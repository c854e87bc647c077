// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"

#include <unordered_map>

/// The kept subscriptions: all of them in the order of creation, and the one of each folder.
class ZEF_INTERNAL ZEFFileManager::Directories {
public:
    Directories();

    zef::Array<ZEFDirectorySubscription>& list() { return *_directories; }

    /// The entry of the folder, borrowed; nil when there is none, or when it is of another folder
    /// that had the same number.
    ZEFDirectorySubscription* subscriptionForFile(const ZEFFileItem& file) const;

    /// Adds to the list and becomes the folder's entry in place of any other.
    void add(ZEFFileItem& file, zef::Ref<ZEFDirectorySubscription>);

    /// Gives up the subscription, and its folder's entry while the folder is there.
    void remove(ZEFDirectorySubscription&);

private:
    struct Hash {
        std::size_t operator()(const zef::Ref<ZEFFileItem>& item) const { return item->hash(); }
    };
    struct Equal {
        bool operator()(const zef::Ref<ZEFFileItem>& a, const zef::Ref<ZEFFileItem>& b) const
        {
            return a->isEqual(b.get());
        }
    };

    // The list is given up before the table: members go the other way round.
    std::unordered_map<zef::Ref<ZEFFileItem>, zef::Ref<ZEFDirectorySubscription>, Hash, Equal>
        _directoriesDict;
    zef::Ref<zef::Array<ZEFDirectorySubscription>> _directories;
};
