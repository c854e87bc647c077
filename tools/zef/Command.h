// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/App.hpp>

#include <string>

namespace tool {

/// One command of the program, `zef NAME`: its options and its work.
class Command {
public:
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    /// Whether the command line asked for it.
    bool isChosen() const { return _options.parsed(); }

    /// Does the work; returns the program's exit status.
    virtual int run() = 0;

protected:
    Command(CLI::App& program, const std::string& name, const std::string& description)
        : _options(*program.add_subcommand(name, description))
    {
    }

    CLI::App& options() { return _options; }

private:
    CLI::App& _options;
};

} // namespace tool
