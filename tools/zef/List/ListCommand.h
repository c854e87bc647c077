// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Command.h"

#include <string>

namespace tool {

/// `zef list`: prints the contents of one folder.
class ListCommand final : public Command {
public:
    explicit ListCommand(CLI::App& program);

    int run() override;

private:
    /// Empty when it is done; otherwise why it can't be.
    std::string list() const;

    std::string _folder;
    bool _plain = false;
    bool _json = false;
};

} // namespace tool
