// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntry.h"

#include "ZEFFilesystemTools/Platform/Presentation/DisplayName.h"
#include "ZEFFilesystemTools/Platform/Presentation/MessageLocale.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void checkEntry(std::string_view bytes, const zef::MessageLocale& locale)
{
    using Kind = zef::DesktopEntry::Kind;
    const zef::DesktopEntry entry(bytes, locale);
    require(entry.name().empty() || zef::isDisplayable(entry.name()));
    require(entry.name().empty() || entry.kind() != Kind::other);
    require(entry.isAlias() == !entry.target().empty());
    require(!entry.isAlias() || entry.kind() == Kind::link);
    require(!entry.isAlias() || entry.target().front() == '/');
    require(entry.target().find('\0') == std::string::npos);
}

// What is shown can always be shown again as it is.
void checkDisplayName(std::string_view bytes)
{
    const auto shown = zef::displayNameOfBytes(bytes);
    require(zef::displayNameOfBytes(shown) == shown);
    require(shown.size() >= bytes.size());
    require(!zef::isDisplayable(bytes) || shown == bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const auto* locale : { "C", "de_AT.UTF-8@euro" })
        checkEntry(bytes, zef::MessageLocale(locale));
    // The first line as a locale of its own.
    const auto firstLine = bytes.substr(0, bytes.find('\n'));
    checkEntry(bytes, zef::MessageLocale(firstLine));
    checkDisplayName(bytes);
    return 0;
}
