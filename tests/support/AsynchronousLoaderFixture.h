// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include "tests/support/LoopFixture.h"
#include "tests/support/RecordingLoaderDelegate.h"

#include <filesystem>
#include <string_view>

/// A loader of the folder "watched" and a delegate that records, on a run loop that the test steps.
class AsynchronousLoaderFixture : public LoopFixture {
protected:
    ~AsynchronousLoaderFixture() override
    {
        delegate->atProgress = nullptr;
        delegate->atFailure = nullptr;
        delegate->atEnd = nullptr;
        loader = nullptr;
        gate.open();
        waitForLoads();
        tick();
        giveUpFiles();
    }

    static zef::OperationQueue* queue()
    {
        return ZEFFileManager::defaultFileManager()->operationQueue();
    }

    /// The time of one look of the loader's passes.
    void tick() { step(0.1); }

    static void waitForLoads()
    {
        if (auto* loads = queue())
            loads->waitUntilAllOperationsAreFinished();
    }

    /// Lets the load come to its end and the loader see that.
    void finish()
    {
        gate.open();
        waitForLoads();
        tick();
    }

    /// An array with one item for each name.
    zef::Ref<ZEFFileItemArray> items(std::initializer_list<std::string_view> names) const
    {
        auto array = zef::makeRef<ZEFFileItemArray>();
        for (const auto name : names)
            array->addObject(item(name));
        return array;
    }

    void startWithWatched() { loader->startWithDirectory(item("watched")); }

    zef::Ref<RecordingLoaderDelegate> delegate = zef::makeRef<RecordingLoaderDelegate>();
    zef::Ref<ZEFAsynchronousFileLoader> loader = zef::makeRef<ZEFAsynchronousFileLoader>(
        delegate.get());

private:
    // What loaders leave alive for good, but what other tests must not find: the arrays of what was
    // found and, after walks that were cancelled, the folders. Nobody else has these items by now.
    void giveUpFiles()
    {
        delegate->latestFiles.clear();
        for (const auto& array : delegate->files)
            array->removeAllObjects();
        giveUp(folder.path("watched"));
        const std::filesystem::recursive_directory_iterator entries(folder.path("watched"));
        for (const auto& entry : entries)
            giveUp(entry.path().string());
    }

    static void giveUp(const std::string& path)
    {
        const auto left = ReportingItem::classObject.newFileItemForPath(path);
        while (left && left->retainCount() > 1)
            left->release();
    }
};
