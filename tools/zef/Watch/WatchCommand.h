// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Command.h"

#include <optional>
#include <string>
#include <vector>

namespace tool {

class FolderWatcher;

/// `zef watch`: prints every change in some folders until it is interrupted.
class WatchCommand final : public Command {
public:
    explicit WatchCommand(CLI::App& program);

    int run() override;

private:
    void prepareManager() const;
    int watch(FolderWatcher&) const;

    std::vector<std::string> _folders;
    std::optional<double> _interval;
    bool _asynchronous = false;
    bool _plain = false;
    bool _json = false;
};

} // namespace tool
