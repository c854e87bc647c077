// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/CatalogIterator.h"
#include "ZEFFilesystemTools/Platform/Objects/FirstException.h"
#include "ZEFFilesystemTools/Platform/Threads/ThreadChecker.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFBackgroundLoad.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscription.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFKnownFiles.h"
#include "ZEFFilesystemTools/Subscriptions/ZEFSubscriberTable.h"

#include <memory>
#include <vector>

/// What is inside a subscription. The members are given up from the last to the first.
struct ZEF_INTERNAL ZEFDirectorySubscription::State {
    State(ZEFDirectorySubscription&, ZEFFileItem& directory, const ZEFFileItemClass* classOfFiles,
        bool isAsynchronous);

    /// The folder as the subscription last saw it.
    struct Folder {
        zef::Ref<ZEFFileItem> directoryFile;
        zef::FileURL lastKnownURL;
        /// Whether the next check asks every known file and looks for new ones.
        bool checkDirContents = false;
        /// False for good once the folder was found removed.
        bool shouldCheck = true;
    };

    /// How a listing on this thread ended: its error, what it found beside the entries that are
    /// known well, and what an item's hook threw on the way.
    struct Listing {
        zef::FileError error = zef::FileError::none;
        std::vector<zef::Ref<ZEFFileItem>> items;
        zef::FirstException hookException;
    };

    /// Lists the folder, or what is left of `entries` where somebody has opened it already, and
    /// takes in what is not known yet. With `changes` the records of that are added there, and
    /// entries that a check has just looked at get no second look.
    Listing list(ZEFChangeArray* changes, std::unique_ptr<zef::CatalogIterator> entries = nullptr);

    /// Takes in what a background load has found, and notifies the subscribers of new files.
    void takeIn(const ZEFBackgroundLoad::Findings&);

    /// Ends the background load; a full check is due after it.
    void closeLoad();

    /// Unless nobody subscribed: a listing for nobody is thrown away again.
    void keepReferencesSoon();

    ZEFDirectorySubscription& subscription;
    Folder folder;
    /// Kept for the subscription's life; the items are made by the class of the folder's own item.
    const ZEFFileItemClass* fileClass;
    bool asynchronous;
    ZEFSubscriberTable subscribers;
    ZEFBackgroundLoad load;
    ZEFKnownFiles knownFiles;
    [[no_unique_address]] zef::ThreadChecker threadChecker;
};
