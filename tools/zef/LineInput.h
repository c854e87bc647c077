// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// The lines of standard input, cut from pieces of any size.
class LineInput {
public:
    struct Line {
        std::string text;
        /// The line was longer than `longestLine`; its text is dropped.
        bool isTooLong = false;
    };

    explicit LineInput(std::size_t longestLine)
        : _longestLine(longestLine)
    {
    }

    /// Reads a piece of what is there; waits if nothing is. Complains of a failure, which ends the
    /// input.
    void read();

    bool hasEnded() const { return _hasEnded; }
    bool hasFailed() const { return _hasFailed; }

    /// The next whole line without its end; nothing while there is none.
    std::optional<Line> takeLine();

    // What `read` is made of.

    void append(std::string_view bytes);
    /// Nothing more will come: what is left counts as a line if there is anything.
    void finish();

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
    bool _hasEnded = false;
    bool _hasFailed = false;
};

} // namespace tool
