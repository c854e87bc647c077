// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/LoadReporter.h"

#include "tools/zef/JSON/FileJSON.h"
#include "tools/zef/Serve/Message.h"

#include <utility>

namespace tool {
LoadReporter::LoadReporter(std::uint64_t number)
    : _number(number)
    , _loader(zef::makeRef<ZEFAsynchronousFileLoader>(this))
{
}

LoadReporter::~LoadReporter()
{
    cancel();
}

void LoadReporter::cancel()
{
    _loader->cancel();
    if (const auto found = std::exchange(_found, nullptr))
        found->removeAllObjects();
}

void LoadReporter::asynchronousFileLoaderUpdatedNumberOfFilesFound(
    ZEFAsynchronousFileLoader*, std::uint32_t count, ZEFFileItem* latestFile)
{
    sendNotification("asynchronousFileLoader.updatedNumberOfFilesFound",
        JSONObject()
            .add("loader", _number)
            .add("count", count)
            .add("latestFile", jsonOfItem(latestFile)));
}

void LoadReporter::asynchronousFileLoaderFinishedFindingFiles(
    ZEFAsynchronousFileLoader*, ZEFFileItemArray* files)
{
    _found = files;
    sendNotification("asynchronousFileLoader.finishedFindingFiles",
        JSONObject().add("loader", _number).add("files", jsonOfItems(*files)));
}

} // namespace tool
