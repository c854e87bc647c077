// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <memory>
#include <vector>

/// Lists one folder for an operation, and in a recursive walk all that is below it. Keeps its place
/// in the tree on the heap, so that a deep tree needs no more of the thread's stack than a flat
/// one. Thread of the operation.
class ZEF_INTERNAL ZEFFileLoadOperation::Listing {
public:
    /// `checkedDirectories` (borrowed) are the folders that were listed already; null for a listing
    /// that does not descend.
    Listing(ZEFFileLoadOperation& operation, ZEFFileItemSet* checkedDirectories);
    ~Listing();
    Listing(const Listing&) = delete;
    Listing& operator=(const Listing&) = delete;

    /// Returns how the listing of `folder` (may be null) ended.
    zef::FileError run(zef::Ref<ZEFFileItem> folder, std::ptrdiff_t level);

private:
    struct Level;

    bool mayEnter(const zef::Ref<ZEFFileItem>& folder, std::ptrdiff_t level);
    zef::FileError enter(
        zef::Ref<ZEFFileItem> folder, std::ptrdiff_t level, const zef::FileURL& found);
    zef::FileError open(Level& next, const zef::FileURL& found);
    zef::CatalogIterator::Opened openIterator(const Level& next, const zef::FileURL& found);
    void suspendLevels(std::size_t count);
    void step();
    void readBatch(Level& level);
    void leave(zef::FileError result);
    bool descend(Level& level, const zef::FileURL& found);
    void append(Batch& batch);
    void noteFailure(const Level& level, zef::FileError error);
    std::unique_ptr<Batch> takeBatch();

    ZEFFileLoadOperation& _operation;
    ZEFFileItemSet* _checkedDirectories;
    std::vector<std::unique_ptr<Level>> _levels;
    std::vector<std::unique_ptr<Batch>> _freeBatches;
    zef::FileError _result = zef::FileError::none;
};
