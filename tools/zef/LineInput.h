// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/LineReader.h"

#include <cstddef>
#include <optional>

namespace tool {

/// The lines of standard input.
class LineInput {
public:
    explicit LineInput(std::size_t longestLine)
        : _lines(longestLine)
    {
    }

    /// Reads a piece of what is there; to be called when something is, or else it waits. Complains
    /// of a failure, which ends the input.
    void read();

    bool hasEnded() const { return _hasEnded; }
    bool hasFailed() const { return _hasFailed; }

    /// See `LineReader`.
    std::optional<LineReader::Line> takeLine() { return _lines.takeLine(); }

private:
    LineReader _lines;
    bool _hasEnded = false;
    bool _hasFailed = false;
};

} // namespace tool
