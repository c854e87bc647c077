// SPDX-License-Identifier: MIT
#include "tools/zef/Archive/ArchiveCommand.h"

#include "tools/zef/ArchiveJSON.h"
#include "tools/zef/Output.h"

namespace tool {

ArchiveCommand::ArchiveCommand(CLI::App& program)
    : FilesCommand(program, "archive",
        "Print what leads to files after they were renamed or moved, one JSON object a line",
        "Files to find again later")
{
}

std::string ArchiveCommand::handle(ZEFFileItem& item)
{
    const auto archive = item.archiveDictionary();
    if (!archive)
        return "nothing would lead to it later";
    Output::standardOutput().write(lineOfJSON(jsonOfArchive(*archive)));
    return {};
}

} // namespace tool
