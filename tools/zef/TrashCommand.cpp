// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Loading/ZEFLoadingOperation.h"

#include "tools/zef/Commands.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileArgument.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"

namespace tool {
namespace {

// Files, and the paths by which the user named them.
struct Found {
    zef::Ref<ZEFFileItemArray> files = zef::makeRef<ZEFFileItemArray>();
    std::vector<std::string> paths;
};

// Complains of what is not there.
Found find(const std::vector<std::string>& paths)
{
    Found found;
    for (const auto& path : paths) {
        std::string reason;
        if (auto item = itemOfArgument(path, ZEFFileItem::classObject, reason)) {
            found.files->addObject(std::move(item));
            found.paths.push_back(path);
        } else {
            complain(path, reason);
        }
    }
    return found;
}

bool move(const Found& found)
{
    auto& manager = *ZEFFileManager::defaultFileManager();
    if (manager.moveFilesToTrash(found.files.get()))
        return true;
    const auto& refusal = manager.lastTrashRefusal();
    complain(found.paths[refusal.index], refusal.reason);
    if (!refusal.isUndone)
        complain("not every file could be moved back out of the trash");
    return false;
}

} // namespace

int run(const TrashOptions& options)
{
    const auto found = find(options.paths);
    if (mustEnd())
        return statusOfEnd();
    const bool isMoved = found.paths.empty() || move(found);
    return isMoved && found.paths.size() == options.paths.size() ? ExitStatus::done
                                                                 : ExitStatus::failed;
}

} // namespace tool
