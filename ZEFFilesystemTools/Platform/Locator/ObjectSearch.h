// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Folders/FolderIndexCache.h"
#include "ZEFFilesystemTools/Platform/Folders/SearchBudget.h"
#include "ZEFFilesystemTools/Platform/Locator/HandleOpener.h"
#include "ZEFFilesystemTools/Platform/Locator/HoldingPolicy.h"
#include "ZEFFilesystemTools/Platform/Locator/LocatorTables.h"

#include <optional>

namespace zef {

/// One search for one object: where it was, by its descriptor, by its handle, in its folder, in
/// other folders. It may have to find the object's folder first, by the same steps. Every place
/// that it returns was looked at. One thread.
class ObjectSearch {
public:
    /// What all searches share, borrowed.
    struct Means {
        LocatorTables& tables;
        FolderIndexCache& indexes;
        HandleOpener& opener;
        HoldingPolicy& policy;
    };

    explicit ObjectSearch(const Means&);

    /// Where the object is now; null if it is gone or can't be found.
    FileURL find(FSRef ref, const FileURL& lastKnown);

private:
    /// Where the object is, null if it is gone; none if the search has to go on.
    using Answer = std::optional<FileURL>;

    struct FolderLook {
        /// Null if the object wasn't found.
        FileURL place;
        /// Whether the object had a name in the folder that it has lost since that was indexed.
        bool isOnTheMove = false;
    };

    FileURL search(FSRef& ref, const FileURL& lastKnown);
    Answer askDescriptor(FSRef& ref, const FileURL& lastKnown);
    Answer openHandle(const FSRef& ref, const FileURL& lastKnown);
    void holdAgain(const FSRef& ref, Ref<ObjectDescriptor> object);
    FileURL verifiedPlace(
        const FSRef& ref, const ObjectDescriptor& object, const FileURL& lastKnown) const;

    FileURL lookInOwnFolder(const FSRef& ref, const FileURL& lastKnown);
    FileURL findOwnFolder(const FSRef& ref);
    FileURL lookInOtherFolders(const FSRef& ref);
    FileURL lookInFolder(const FSRef& ref, const FileURL& folder);
    static FolderLook lookInIndexedFolder(
        const FSRef& ref, const FileURL& folder, const FolderIndex& index);

    FileURL spell(const FSRef& ref, const FileURL& found, const FileURL& lastKnown) const;

    Means _means;
    double _secondsAtStart;
    unsigned _depth = 0;
    /// For other folders, while they are searched.
    std::optional<SearchBudget> _budget;
};

} // namespace zef
