// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Output.h"

#include <string>

namespace tool {

/// Puts colours on text for standard output, where they are welcome.
class Paint {
public:
    static constexpr auto bold = "\x1b[1m";
    static constexpr auto faint = "\x1b[2m";
    static constexpr auto red = "\x1b[31m";
    static constexpr auto green = "\x1b[32m";
    static constexpr auto yellow = "\x1b[33m";
    static constexpr auto blue = "\x1b[34m";
    static constexpr auto cyan = "\x1b[36m";
    static constexpr auto plain = "\x1b[0m";

    explicit Paint(bool isWelcome = Output::standardOutput().showsColors())
        : _isWelcome(isWelcome)
    {
    }

    std::string operator()(const char* color, const std::string& text) const
    {
        return _isWelcome ? color + text + plain : text;
    }

private:
    bool _isWelcome;
};

} // namespace tool
