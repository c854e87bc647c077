// SPDX-License-Identifier: MIT
#include "tools/zef/FilesCommand.h"

#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileArgument.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace tool {

FilesCommand::FilesCommand(CLI::App& program, const std::string& name,
    const std::string& description, const std::string& descriptionOfFiles)
    : Command(program, name, description)
{
    options().add_flag("--plain", _plain, "Use plain file items");
    options().add_option("PATH", _paths, descriptionOfFiles)->type_name("")->required();
}

int FilesCommand::run()
{
    zef::setLogSink([](std::string_view line) { complain(line); });
    bool hasFailed = false;
    for (const auto& path : _paths) {
        if (mustEnd())
            return statusOfEnd();
        hasFailed |= !handleFile(path);
    }
    if (mustEnd())
        return statusOfEnd();
    return hasFailed ? ExitStatus::failed : ExitStatus::done;
}

bool FilesCommand::handleFile(const std::string& path)
{
    std::string reason;
    const auto item = itemOfArgument(path, FileClasses::chosen(_plain), reason);
    if (item)
        reason = handle(*item);
    if (!reason.empty())
        complain(path, reason);
    return reason.empty();
}

} // namespace tool
