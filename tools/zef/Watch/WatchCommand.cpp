// SPDX-License-Identifier: MIT
#include "tools/zef/Watch/WatchCommand.h"

#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/Interruption.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"
#include "tools/zef/Watch/FolderWatcher.h"
#include "tools/zef/Watch/JSONChangeView.h"
#include "tools/zef/Watch/TextChangeView.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <cmath>

namespace tool {
namespace {

// The file manager keeps the interval in 32 bits.
bool isInterval(double seconds)
{
    const auto kept = static_cast<float>(seconds);
    return std::isfinite(kept) && kept > 0;
}

std::string checkInterval(const std::string& text)
{
    double seconds = 0;
    const bool isValid = CLI::detail::lexical_cast(text, seconds) && isInterval(seconds);
    return isValid ? "" : "\"" + text + "\" is no positive number of seconds";
}

std::unique_ptr<ChangeView> makeView(bool json, std::size_t folderCount)
{
    if (json)
        return std::make_unique<JSONChangeView>();
    return std::make_unique<TextChangeView>(folderCount > 1);
}

// The terminal has shown ^C; what comes next is to begin on a line of its own.
void leaveTerminal()
{
    if (Interruption::signal() && Output::standardOutput().isTerminal())
        Output::standardOutput().write("\n");
}

} // namespace

WatchCommand::WatchCommand(CLI::App& program)
    : Command(program, "watch", "Print every change in folders until interrupted")
{
    options()
        .add_option("--interval", _interval, "Seconds between two looks at the folders (3)")
        ->type_name("S")
        ->check(CLI::Validator(checkInterval, "", "interval"));
    options().add_flag("--async", _asynchronous, "Load the folders in the background");
    options().add_flag("--plain", _plain, "Use plain file items");
    options().add_flag("--json", _json, "Print one JSON object a line");
    options().add_option("FOLDER", _folders, "Folders to watch")->type_name("")->required();
}

int WatchCommand::run()
{
    zef::setLogSink([](std::string_view line) { complain(line); });
    prepareManager();
    const auto view = makeView(_json, _folders.size());
    const auto watcher = zef::makeRef<FolderWatcher>(*view);
    const int status = watch(*watcher);
    leaveTerminal();
    return status;
}

void WatchCommand::prepareManager() const
{
    auto& manager = *ZEFFileManager::defaultFileManager();
    manager.setFileClass(&FileClasses::chosen(_plain));
    manager.setAsynchronous(_asynchronous);
    if (_interval)
        manager.setPollingInterval(*_interval);
}

int WatchCommand::watch(FolderWatcher& watcher) const
{
    for (const auto& folder : _folders) {
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

} // namespace tool
