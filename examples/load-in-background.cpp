// SPDX-License-Identifier: MIT

// Prints the visible files in a folder and in all that people see below it, five levels deep:
// `load-in-background FOLDER`. The thread that asks is free meanwhile.

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <cstdio>

namespace {

/// Is told how far the load is and what it found.
class Progress final : public ZEFObject,
                       public ZEFAsynchronousFileLoaderDelegate,
                       public ZEFAsynchronousFileLoaderProgressDelegate {
    void asynchronousFileLoaderUpdatedNumberOfFilesFound(
        ZEFAsynchronousFileLoader*, std::uint32_t count, ZEFFileItem*) override
    {
        std::fprintf(stderr, "%u files\n", count);
    }

    void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader*, ZEFFileItemArray* files) override
    {
        for (const auto& file : *files) {
            if (const auto* path = file->path())
                std::printf("%s\n", path->c_str());
        }
        files->removeAllObjects();
        zef::RunLoop::current().stop();
    }
};

} // namespace

int main(int argumentCount, char** arguments)
{
    const auto folder = argumentCount == 2
        ? ZEFBasicInfoFileItem::classObject.newFileItemForPath(arguments[1])
        : nullptr;
    if (!folder || !folder->isBasicDirectory()) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    const auto start = zef::makeRef<ZEFFileItemArray>();
    start->addObject(folder);

    const auto progress = zef::makeRef<Progress>();
    const auto loader = zef::makeRef<ZEFAsynchronousFileLoader>(progress.get());
    loader->setFileFilter(ZEFVisibleFileFilter::filter());
    loader->setDirectoryFilter(ZEFNormalDirectoryFilter::filter());
    loader->startRecursivelyWithFilesToDepth(start.get(), 5);
    zef::RunLoop::current().run(zef::RunLoopMode::defaultMode, 3600);
    loader->cancel(); // harmless when it has ended; before its delegate dies, in any case

    ZEFFileManager::defaultFileManager()->shutdown();
    return loader->isComplete() ? 0 : 1;
}
