// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <mutex>
#include <string_view>

namespace tool {

/// One line on standard error that says how far some work is, each time in the place of what it
/// said before. Writes nothing if that is not a terminal. Any thread.
class ProgressLine {
public:
    static ProgressLine& shared();

    /// Shows that `count` files were found and where the latest is; never wider than the terminal.
    void show(std::size_t count, std::string_view latestPath);

    /// Leaves the terminal's line as if nothing had been there, the ^C of an interruption too.
    void erase();

    /// Erases it while `write` writes something else to the terminal.
    void makeWay(const std::function<void()>& write);

private:
    ProgressLine() = default;

    std::mutex _mutex;
    bool _isShown = false;
};

} // namespace tool
