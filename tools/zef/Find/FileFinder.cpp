// SPDX-License-Identifier: MIT
#include "tools/zef/Find/FileFinder.h"

#include "tools/zef/MainLoop.h"

namespace tool {

FileFinder::FileFinder(ProgressLine& progress)
    : _progress(progress)
    , _loader(zef::makeRef<ZEFAsynchronousFileLoader>(this))
{
}

FileFinder::~FileFinder()
{
    _loader->cancel();
}

zef::Ref<ZEFFileItemArray> FileFinder::find(const ZEFFileItemArray& files, std::ptrdiff_t depth)
{
    _loader->startRecursivelyWithFilesToDepth(&files, depth);
    while (_loader->isLoading() && !mustEnd()) {
        if (waitForWork(-1).runLoopIsDue)
            zef::RunLoop::current().perform();
    }
    _loader->cancel();
    _progress.erase();
    return _found;
}

void FileFinder::asynchronousFileLoaderUpdatedNumberOfFilesFound(
    ZEFAsynchronousFileLoader*, std::uint32_t count, ZEFFileItem* latestFile)
{
    const auto url = latestFile ? latestFile->url() : zef::FileURL();
    _progress.show(count, url ? url.path() : std::string());
}

void FileFinder::asynchronousFileLoaderFinishedFindingFiles(
    ZEFAsynchronousFileLoader*, ZEFFileItemArray* files)
{
    _found = files;
}

} // namespace tool
