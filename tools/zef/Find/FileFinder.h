// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include "tools/zef/Find/ProgressLine.h"

namespace tool {

/// Loads files and what is beneath them while the thread's run loop turns, and shows how far it is.
class FileFinder final : public ZEFObject,
                         public ZEFAsynchronousFileLoaderDelegate,
                         public ZEFAsynchronousFileLoaderProgressDelegate {
public:
    /// `progress` is borrowed.
    explicit FileFinder(ProgressLine& progress);

    /// To be set up before `find`.
    ZEFAsynchronousFileLoader& loader() { return *_loader; }

    /// Everything that was found, once all is; nil when the program had to end before.
    zef::Ref<ZEFFileItemArray> find(const ZEFFileItemArray& files, std::ptrdiff_t depth);

    void asynchronousFileLoaderUpdatedNumberOfFilesFound(
        ZEFAsynchronousFileLoader*, std::uint32_t count, ZEFFileItem* latestFile) override;
    void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader*, ZEFFileItemArray* files) override;

private:
    ~FileFinder() override;

    ProgressLine& _progress;
    zef::Ref<ZEFAsynchronousFileLoader> _loader;
    zef::Ref<ZEFFileItemArray> _found;
};

} // namespace tool
