// SPDX-License-Identifier: MIT

// Moves files to the trash, all or none: `trash-files FILE...`.

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <cstdio>

int main(int argumentCount, char** arguments)
{
    auto* manager = ZEFFileManager::defaultFileManager();
    const auto files = zef::makeRef<ZEFFileItemArray>();
    for (int index = 1; index < argumentCount; ++index) {
        auto file = ZEFFileItem::classObject.newFileItemForPath(arguments[index]);
        if (!file) {
            std::fprintf(stderr, "there is no %s\n", arguments[index]);
            return 1;
        }
        files->addObject(std::move(file));
    }
    if (!manager->moveFilesToTrash(files.get())) {
        const auto& refusal = manager->lastTrashRefusal();
        const auto* path = files->objectAtIndex(refusal.index)->path();
        std::fprintf(stderr, "%s: %s\n", path ? path->c_str() : "a file", refusal.reason.c_str());
        return 1;
    }
    for (const auto& file : *files) {
        if (const auto now = file->currentURL())
            std::printf("%s\n", now.absoluteString().c_str());
    }
    manager->shutdown();
    return 0;
}
