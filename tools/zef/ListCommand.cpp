// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "tools/zef/Commands.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileArgument.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/ItemPrinter.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"

namespace tool {
namespace {

// Empty when it is done; otherwise why it can't be.
std::string list(const ListOptions& options)
{
    auto reason = reasonNotToWatch(options.folder);
    if (!reason.empty())
        return reason;
    auto& manager = *ZEFFileManager::defaultFileManager();
    manager.setFileClass(&FileClasses::printed(options.plain, options.json));
    const auto folder = itemOfArgument(pathToWatch(options.folder), *manager.fileClass(), reason);
    if (!folder)
        return reason;
    const auto files = manager.filesInDirectory(folder.get());
    if (!files)
        return "it can't be listed";
    printItems(*files, options.json);
    return {};
}

} // namespace

int run(const ListOptions& options)
{
    const auto reason = list(options);
    if (!reason.empty())
        complain(options.folder, reason);
    if (mustEnd())
        return statusOfEnd();
    return reason.empty() ? ExitStatus::done : ExitStatus::failed;
}

} // namespace tool
