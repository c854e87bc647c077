// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zef {

/// The names that a folder's ".hidden" file lists: one a line, byte for byte, blanks included.
///
/// Immutable; any thread.
class HiddenList {
public:
    explicit HiddenList(std::string bytes);

    bool contains(std::string_view name) const;

private:
    struct Line {
        std::uint32_t begin;
        std::uint32_t length;
    };

    std::string_view text(Line line) const;

    std::string _bytes;
    /// Ordered by what they say.
    std::vector<Line> _lines;
};

} // namespace zef
