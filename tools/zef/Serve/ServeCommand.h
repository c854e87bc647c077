// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Command.h"

namespace tool {

/// `zef serve`: the library for programs in any language.
class ServeCommand final : public Command {
public:
    explicit ServeCommand(CLI::App& program);

    int run() override;

private:
    bool _plain = false;
};

} // namespace tool
