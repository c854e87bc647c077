// SPDX-License-Identifier: MIT
#include "tools/zef/Arguments.h"

namespace tool {

std::vector<std::string> parserArguments(int count, char** arguments)
{
    std::vector<std::string> result;
    bool onlyPathsFollow = false;
    for (int index = 1; index < count; ++index) {
        const std::string argument = arguments[index];
        if (!onlyPathsFollow && argument == "--") {
            onlyPathsFollow = true;
            continue;
        }
        const bool isMistakable = argument.starts_with('[')
            || (onlyPathsFollow && argument.starts_with('-'));
        result.push_back(isMistakable ? "./" + argument : argument);
    }
    return result;
}

} // namespace tool
