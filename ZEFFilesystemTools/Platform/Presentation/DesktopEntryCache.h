// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntry.h"
#include "ZEFFilesystemTools/Platform/Presentation/SmallFileCache.h"

#include <memory>
#include <string>
#include <string_view>

namespace zef {

/// Reads the desktop entries among the files, and remembers the last few because several questions
/// follow one another about each. Any thread.
class DesktopEntryCache {
public:
    /// `clock` is borrowed and should be the one that the files' stamps come from.
    explicit DesktopEntryCache(Clock& clock = Clock::system())
        : _entries(clock)
    {
    }

    /// Whether a file that is called `name` may be a desktop entry; no other is ever opened.
    static bool isNameOfEntry(std::string_view name);

    /// The entry at `path`, which `stat` was just taken of, in the language of the environment.
    /// Null if it is not a regular file of at most 64 KiB, may not be read, or was replaced
    /// meanwhile.
    std::shared_ptr<const DesktopEntry> entry(const char* path, const Stat& stat);

private:
    void heed(const MessageLocale&);

    SmallFileCache<DesktopEntry, 8> _entries;
    std::mutex _mutex;
    /// The language that the remembered entries' names are in.
    std::string _locale;
};

} // namespace zef
