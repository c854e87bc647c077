// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"

#include <functional>
#include <string>
#include <vector>

/// A delegate of loaders that remembers its calls.
class RecordingLoaderDelegate final : public ZEFObject,
                                      public ZEFAsynchronousFileLoaderDelegate,
                                      public ZEFAsynchronousFileLoaderProgressDelegate,
                                      public ZEFAsynchronousFileLoaderFailureDelegate {
public:
    using Action = std::function<void(ZEFAsynchronousFileLoader&)>;

    /// What the delegate does when it is called.
    Action atProgress;
    Action atFailure;
    Action atEnd;

    /// "40" for a progress message, "finished with 40" for the last one, "-43 at sub" for a
    /// folder that could not be listed.
    std::vector<std::string> calls;
    /// What the progress messages had for their latest files.
    std::vector<zef::Ref<ZEFFileItem>> latestFiles;
    /// What the finished loads found, in the order in which they finished.
    std::vector<zef::Ref<ZEFFileItemArray>> files;

    void asynchronousFileLoaderUpdatedNumberOfFilesFound(
        ZEFAsynchronousFileLoader* loader, std::uint32_t count, ZEFFileItem* latestFile) override
    {
        calls.push_back(std::to_string(count));
        latestFiles.emplace_back(latestFile);
        perform(atProgress, *loader);
    }

    void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader* loader, ZEFFileItemArray* found) override
    {
        calls.push_back("finished with " + std::to_string(found->count()));
        files.emplace_back(found);
        perform(atEnd, *loader);
    }

    void asynchronousFileLoaderFailedToListDirectory(
        ZEFAsynchronousFileLoader* loader, ZEFFileItem* directory, zef::FileError error) override
    {
        const auto name = directory ? directory->url().lastPathComponent() : "(null)";
        calls.push_back(std::to_string(numberOf(error)) + " at " + name);
        perform(atFailure, *loader);
    }

private:
    // The action may replace itself.
    static void perform(const Action& action, ZEFAsynchronousFileLoader& loader)
    {
        if (const auto current = action)
            current(loader);
    }
};
