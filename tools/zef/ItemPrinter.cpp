// SPDX-License-Identifier: MIT
#include "tools/zef/ItemPrinter.h"

#include "tools/zef/JSON/FileJSON.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"
#include "tools/zef/Text.h"

#include <utility>

namespace tool {
namespace {

// So that a million lines don't take as many system calls.
constexpr std::size_t enoughToWrite = 65536;

// Empty for an item that was lost meanwhile.
std::string lineOfPath(const ZEFFileItem& item)
{
    const auto url = item.url();
    return url ? textForTerminal(url.path()) + '\n' : std::string();
}

} // namespace

void printItems(const ZEFFileItemArray& items, bool asJSON)
{
    std::string text;
    for (const auto& item : items) {
        text += asJSON ? jsonOfItem(item.get()).line() : lineOfPath(*item);
        if (text.size() < enoughToWrite)
            continue;
        Output::standardOutput().write(std::exchange(text, {}));
        if (mustEnd())
            return;
    }
    Output::standardOutput().write(text);
}

} // namespace tool
