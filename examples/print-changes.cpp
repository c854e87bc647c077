// SPDX-License-Identifier: MIT

// The program of the README, which shows it from here on: ./check compares the two.

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <cstdio>
#include <string>

// What was asked for once is kept, so a file that is gone still knows its name.
static std::string nameOf(ZEFFileItem& file)
{
    auto* item = zef::downcast<ZEFBasicInfoFileItem>(&file);
    return item ? item->fileName().value_or("(no name)") : file.description();
}

class Printer final : public ZEFObject, public ZEFDirectorySubscriptionProtocol {
    void directorySubscriptionFoundChanges(
        ZEFDirectorySubscription*, ZEFChangeArray* changes) override
    {
        for (const auto& record : *changes)
            std::printf(
                "%2d %s\n", static_cast<int>(record->event()), nameOf(*record->file()).c_str());
    }
};

int main(int argumentCount, char** arguments)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // line by line, also into a pipe
    auto* manager = ZEFFileManager::defaultFileManager();
    manager->setFileClass(&ZEFBasicInfoFileItem::classObject);
    const auto printer = zef::makeRef<Printer>();
    const auto* folder = argumentCount == 2 ? manager->subscribeForPath(printer.get(), arguments[1])
                                            : nullptr;
    if (!folder) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    const auto files = folder->files();
    for (const auto& file : *files)
        std::printf("   %s\n", nameOf(*file).c_str());

    zef::RunLoop::current().run(zef::RunLoopMode::defaultMode, 60); // seconds
    manager->unsubscribe(printer.get());
    manager->shutdown();
}
