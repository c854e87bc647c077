// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// Cuts what arrives in pieces of any size into lines.
class LineReader {
public:
    struct Line {
        std::string text;
        /// The line was longer than `longestLine`; its text is dropped.
        bool isTooLong = false;
    };

    explicit LineReader(std::size_t longestLine)
        : _longestLine(longestLine)
    {
    }

    void append(std::string_view bytes);

    /// Nothing more will come: what is left counts as a line if there is anything.
    void finish();

    /// The next whole line without its end, or nothing while none is there.
    std::optional<Line> takeLine();

private:
    Line take(std::size_t end);

    std::size_t _longestLine;
    std::string _buffer;
    /// Where the lines that were not taken begin.
    std::size_t _begin = 0;
    /// Up to where there is no line end.
    std::size_t _searched = 0;
    /// The rest of a line that was too long is still to come.
    bool _skips = false;
};

} // namespace tool
