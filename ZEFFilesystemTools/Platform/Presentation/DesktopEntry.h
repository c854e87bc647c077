// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Presentation/MessageLocale.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zef {

/// What a desktop entry, as freedesktop.org describes them, says about a file: its kind, its name,
/// and where it leads. It is never acted upon.
///
/// Immutable; any thread.
class DesktopEntry {
public:
    enum class Kind {
        application,
        link,
        /// Anything else, and what is not a desktop entry at all.
        other,
    };

    /// An entry that says nothing.
    DesktopEntry() = default;

    /// The entry that `bytes` write: the keys of the first group, which must be "Desktop Entry". Of
    /// two equal keys the later one counts. Lines of another form are left out.
    DesktopEntry(std::string_view bytes, const MessageLocale&);

    Kind kind() const { return _kind; }

    /// The name in the language that suits best, ready to be shown; empty if there is none that
    /// can be shown. What it claims need not be true: any file can call itself "report.pdf".
    const std::string& name() const { return _name; }

    /// The absolute path that a link leads to on this system, from an absolute path or a file URL
    /// without another host; empty for links to the web and for what is not a link.
    const std::string& target() const { return _target; }

    bool isAlias() const { return !_target.empty(); }

private:
    void readPair(std::string_view key, std::string_view value, const MessageLocale&);
    void readName(std::string_view value, std::size_t distance);
    void finish();

    Kind _kind = Kind::other;
    std::size_t _nameDistance = MessageLocale::unsuited;
    std::string _name;
    std::string _target;
};

} // namespace zef
