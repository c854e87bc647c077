// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"

#include <cstdint>

namespace tool {

/// One load that a client asked for; passes on what the loader reports, as notifications.
class LoadReporter final : public ZEFObject,
                           public ZEFAsynchronousFileLoaderDelegate,
                           public ZEFAsynchronousFileLoaderProgressDelegate {
public:
    /// `number` is the one by which the client knows the load.
    explicit LoadReporter(std::uint64_t number);

    ZEFAsynchronousFileLoader& loader() { return *_loader; }

    /// Ends the load, and lets go of what was found once it is complete.
    void cancel();

    void asynchronousFileLoaderUpdatedNumberOfFilesFound(
        ZEFAsynchronousFileLoader*, std::uint32_t count, ZEFFileItem* latestFile) override;
    void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader*, ZEFFileItemArray* files) override;

private:
    ~LoadReporter() override;

    std::uint64_t _number;
    zef::Ref<ZEFAsynchronousFileLoader> _loader;
    /// The loader's own, which outlives it; null until the load is complete.
    zef::Ref<ZEFFileItemArray> _found;
};

} // namespace tool
