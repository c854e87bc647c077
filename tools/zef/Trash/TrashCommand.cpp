// SPDX-License-Identifier: MIT
#include "tools/zef/Trash/TrashCommand.h"

#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileArgument.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace tool {

TrashCommand::TrashCommand(CLI::App& program)
    : Command(program, "trash", "Move files to the trash, all or none")
{
    options().add_option("PATH", _paths, "Files to move")->type_name("")->required();
}

int TrashCommand::run()
{
    zef::setLogSink([](std::string_view line) { complain(line); });
    for (const auto& path : _paths)
        find(path);
    if (mustEnd())
        return statusOfEnd();
    const bool isMoved = _files->isEmpty() || move();
    return isMoved && _found.size() == _paths.size() ? ExitStatus::done : ExitStatus::failed;
}

void TrashCommand::find(const std::string& path)
{
    std::string reason;
    auto item = itemOfArgument(path, FileClasses::plain(), reason);
    if (!item)
        return complain(path, reason);
    _found.push_back(path);
    _files->addObject(std::move(item));
}

bool TrashCommand::move() const
{
    auto& manager = *ZEFFileManager::defaultFileManager();
    if (manager.moveFilesToTrash(_files.get()))
        return true;
    const auto& refusal = manager.lastTrashRefusal();
    complain(_found[refusal.index], refusal.reason);
    if (!refusal.isUndone)
        complain("not every file could be moved back out of the trash");
    return false;
}

} // namespace tool
