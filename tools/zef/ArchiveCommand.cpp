// SPDX-License-Identifier: MIT
#include "tools/zef/Commands.h"
#include "tools/zef/FileArgument.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/JSON/ArchiveJSON.h"
#include "tools/zef/Output.h"

namespace tool {

int run(const ArchiveOptions& options)
{
    const auto& fileClass = FileClasses::printed(options.plain, false);
    return forEachArgument(options.paths, fileClass, [](ZEFFileItem& item) -> std::string {
        const auto archive = item.archiveDictionary();
        if (!archive)
            return "nothing would lead to it later";
        Output::standardOutput().write(jsonOfArchive(*archive).line());
        return {};
    });
}

} // namespace tool
