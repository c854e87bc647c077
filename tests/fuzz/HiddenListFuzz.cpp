// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/HiddenList.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

// Whether a line of `bytes` is `name`, found the slow way.
bool hasLine(std::string_view bytes, std::string_view name)
{
    for (;;) {
        const auto end = std::min(bytes.find('\n'), bytes.size());
        if (!name.empty() && bytes.substr(0, end) == name)
            return true;
        if (end == bytes.size())
            return false;
        bytes.remove_prefix(end + 1);
    }
}

void check(const zef::HiddenList& list, std::string_view bytes, std::string_view name)
{
    if (list.contains(name) != hasLine(bytes, name))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The first line is what is asked for.
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const auto end = std::min(input.find('\n'), input.size());
    const auto name = input.substr(0, end);
    const auto bytes = input.substr(std::min(end + 1, input.size()));
    const zef::HiddenList list{ std::string(bytes) };

    check(list, bytes, name);
    check(list, bytes, {});
    check(list, bytes, bytes);
    for (std::size_t index = 0; index < std::min<std::size_t>(bytes.size(), 64); ++index)
        check(list, bytes, bytes.substr(index, bytes.find('\n', index) - index));
    return 0;
}
