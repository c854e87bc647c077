// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntryCache.h"

namespace zef {
namespace {

constexpr std::string_view ending = ".desktop";

} // namespace

bool DesktopEntryCache::isNameOfEntry(std::string_view name)
{
    return name.size() > ending.size() && name.ends_with(ending);
}

std::shared_ptr<const DesktopEntry> DesktopEntryCache::entry(const char* path, const Stat& stat)
{
    const auto locale = MessageLocale::ofEnvironment();
    heed(locale);
    return _entries.read(
        path, stat, [&locale](const std::string& bytes) { return DesktopEntry(bytes, locale); });
}

void DesktopEntryCache::heed(const MessageLocale& locale)
{
    std::lock_guard lock(_mutex);
    if (_locale == locale.text())
        return;
    _locale = locale.text();
    _entries.forget();
}

} // namespace zef
