// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tools/zef/Commands.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/Interruption.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"
#include "tools/zef/Watch/FolderWatcher.h"
#include "tools/zef/Watch/JSONChangeView.h"
#include "tools/zef/Watch/TextChangeView.h"

namespace tool {
namespace {

std::unique_ptr<ChangeView> makeView(const WatchOptions& options)
{
    if (options.json)
        return std::make_unique<JSONChangeView>();
    return std::make_unique<TextChangeView>(options.folders.size() > 1);
}

// The terminal has shown ^C; what comes next is to begin on a line of its own.
void leaveTerminal()
{
    if (Interruption::signal() && Output::standardOutput().isTerminal())
        Output::standardOutput().write("\n");
}

void prepareManager(const WatchOptions& options)
{
    auto& manager = *ZEFFileManager::defaultFileManager();
    manager.setFileClass(&FileClasses::chosen(options.plain));
    manager.setAsynchronous(options.asynchronous);
    if (options.interval)
        manager.setPollingInterval(*options.interval);
}

int watch(const std::vector<std::string>& folders, FolderWatcher& watcher)
{
    for (const auto& folder : folders) {
        if (mustEnd())
            return statusOfEnd();
        watcher.watch(folder);
    }
    while (watcher.hasFolders()) {
        if (mustEnd())
            return statusOfEnd();
        if (waitForWork(-1).runLoopIsDue)
            zef::RunLoop::current().perform();
    }
    complain("nothing left to watch");
    return ExitStatus::failed;
}

} // namespace

int run(const WatchOptions& options)
{
    prepareManager(options);
    const auto view = makeView(options);
    const auto watcher = zef::makeRef<FolderWatcher>(
        *view, [](const std::string& text) { Output::standardOutput().write(text); });
    const int status = watch(options.folders, *watcher);
    leaveTerminal();
    return status;
}

} // namespace tool
