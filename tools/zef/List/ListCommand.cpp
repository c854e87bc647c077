// SPDX-License-Identifier: MIT
#include "tools/zef/List/ListCommand.h"

#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileArgument.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/ItemPrinter.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"
#include "tools/zef/Watch/FolderArgument.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace tool {

ListCommand::ListCommand(CLI::App& program)
    : Command(program, "list", "Print the contents of a folder")
{
    options().add_flag("--plain", _plain, "Use plain file items");
    options().add_flag("--json", _json, "Print one JSON object a line");
    options().add_option("FOLDER", _folder, "The folder")->type_name("")->required();
}

int ListCommand::run()
{
    zef::setLogSink([](std::string_view line) { complain(line); });
    const auto reason = list();
    if (!reason.empty())
        complain(_folder, reason);
    if (mustEnd())
        return statusOfEnd();
    return reason.empty() ? ExitStatus::done : ExitStatus::failed;
}

std::string ListCommand::list() const
{
    auto reason = reasonNotToWatch(_folder);
    if (!reason.empty())
        return reason;
    auto& manager = *ZEFFileManager::defaultFileManager();
    manager.setFileClass(&FileClasses::chosen(_plain));
    const auto folder = itemOfArgument(pathToWatch(_folder), *manager.fileClass(), reason);
    if (!folder)
        return reason;
    const auto files = manager.filesInDirectory(folder.get());
    if (!files)
        return "it can't be listed";
    printItems(*files, _json ? ItemFormat::json : ItemFormat::paths);
    return {};
}

} // namespace tool
