// SPDX-License-Identifier: MIT

// Says what became of files: `follow-files FILE...`. Rename, move, change or delete them with any
// program; each line that you type asks again, and the end of the input ends the program.

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace {

/// Any object can be an observer; the items tell observers apart by identity.
class Window final : public ZEFObject { };

void printChanges(ZEFFileItem& file, const Window& window)
{
    const ZEFFileChanges changes = file.changesForObserver(&window);
    if (changes.exists && changes.pathChanged)
        std::printf("moved to %s\n", file.path()->c_str());
    else if (changes.exists)
        std::printf(changes.modified ? "changed\n" : "unchanged\n");
    else
        std::printf(changes.pathChanged ? "gone\n" : "gone, as you know\n");
}

} // namespace

int main(int argumentCount, char** arguments)
{
    const auto window = zef::makeRef<Window>();
    std::vector<zef::Ref<ZEFFileItem>> files;
    for (int index = 1; index < argumentCount; ++index) {
        auto file = ZEFFileItem::classObject.newFileItemForPath(arguments[index]);
        if (!file) {
            std::fprintf(stderr, "there is no %s\n", arguments[index]);
            return 1;
        }
        file->registerFileObserver(window.get());
        file->initKQueue(); // also notices a change that leaves the time stamps as they were
        files.push_back(std::move(file));
    }
    std::printf("following %zu files\n", files.size());
    std::fflush(stdout);

    std::string line;
    while (std::getline(std::cin, line)) {
        for (const auto& file : files)
            printChanges(*file, *window);
        std::fflush(stdout);
    }

    for (const auto& file : files)
        file->removeFileObserver(window.get());
    return 0;
}
