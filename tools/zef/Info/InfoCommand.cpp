// SPDX-License-Identifier: MIT
#include "tools/zef/Info/InfoCommand.h"

#include "tools/zef/FileClasses.h"
#include "tools/zef/FileJSON.h"
#include "tools/zef/Output.h"

namespace tool {
namespace {

std::string jsonLine(ZEFFileItem& item)
{
    auto line = jsonOfItemInFull(item);
    if (auto* withBasicInfo = FileClasses::basicInfoItem(item))
        line.update(jsonOfBasicInfo(*withBasicInfo));
    return lineOfJSON(line);
}

} // namespace

InfoCommand::InfoCommand(CLI::App& program)
    : FilesCommand(program, "info", "Print what is known of files", "Files to tell about")
{
    options().add_flag("--json", _json, "Print one JSON object a line");
}

std::string InfoCommand::handle(ZEFFileItem& item)
{
    Output::standardOutput().write(_json ? jsonLine(item) : _text.text(item));
    return {};
}

} // namespace tool
