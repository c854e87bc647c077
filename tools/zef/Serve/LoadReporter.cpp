// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/LoadReporter.h"

#include "tools/zef/Serve/Message.h"

#include <utility>

namespace tool {
namespace {

// As text: a tree of JSON values for a million files takes many times the memory.
std::string textOfItems(const ZEFFileItemArray& items)
{
    std::string text = "[";
    for (const auto& item : items) {
        text += lineOfJSON(jsonOfItem(item.get()));
        text.back() = ',';
    }
    if (text.back() == ',')
        text.pop_back();
    return text + ']';
}

} // namespace

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
        { { "loader", _number }, { "count", count }, { "latestFile", jsonOfItem(latestFile) } });
}

void LoadReporter::asynchronousFileLoaderFinishedFindingFiles(
    ZEFAsynchronousFileLoader*, ZEFFileItemArray* files)
{
    _found = files;
    sendNotificationText("asynchronousFileLoader.finishedFindingFiles",
        R"({"loader":)" + std::to_string(_number) + R"(,"files":)" + textOfItems(*files) + '}');
}

} // namespace tool
