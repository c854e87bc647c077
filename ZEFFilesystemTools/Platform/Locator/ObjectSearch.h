// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Folders/FolderIndexCache.h"
#include "ZEFFilesystemTools/Platform/Locator/HandleOpener.h"
#include "ZEFFilesystemTools/Platform/Locator/HoldingPolicy.h"
#include "ZEFFilesystemTools/Platform/Locator/LocatorTables.h"

#include <cstddef>

namespace zef {

/// One search for one object: where it was, by its descriptor, by its handle, in its folder, in
/// other folders. It may have to find the object's folder first, by the same steps. Every place
/// that it tells was looked at. One thread.
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

    /// Where the object is now; nil when it is gone or can't be found.
    FileURL find(FSRef ref, const FileURL& lastKnown);

private:
    enum class Progress { found, gone, open };

    FileURL search(FSRef& ref, const FileURL& lastKnown);
    Progress askDescriptor(FSRef& ref, const FileURL& lastKnown, FileURL& place);
    Progress openHandle(const FSRef& ref, const FileURL& lastKnown, FileURL& place);
    void holdAgain(const FSRef& ref, Ref<ObjectDescriptor> object);
    FileURL verifiedPlace(
        const FSRef& ref, const ObjectDescriptor& object, const FileURL& lastKnown) const;

    FileURL lookInOwnFolder(const FSRef& ref, const FileURL& lastKnown);
    FileURL findOwnFolder(const FSRef& ref);
    FileURL lookInOtherFolders(const FSRef& ref);
    FileURL lookInFolder(const FSRef& ref, const FileURL& folder);
    static FileURL lookInIndexedFolder(
        const FSRef& ref, const FileURL& folder, const FolderIndex& index, bool& isOnTheMove);
    bool isOutdated(const FolderIndex& index) const;

    FileURL spell(const FSRef& ref, const FileURL& found, const FileURL& lastKnown) const;

    Means _means;
    double _secondsAtStart;
    unsigned _depth = 0;
    bool _isInOtherFolders = false;
    std::size_t _foldersLeft = 0;
    std::size_t _entriesLeft = 0;
};

} // namespace zef
