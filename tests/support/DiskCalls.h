// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// Replaces the system calls that write files to the disk and move them to free names (fsync,
/// syncfs, renameat2) while it lives: remembers their order and lets them fail. One at a time; one
/// thread.
class DiskCalls {
public:
    DiskCalls();
    ~DiskCalls();
    DiskCalls(const DiskCalls&) = delete;
    DiskCalls& operator=(const DiskCalls&) = delete;

    /// "fsync a.trashinfo", "syncfs info", "move a": the call and the name of the file, folder or
    /// entry that it is about.
    std::vector<std::string> calls;

    /// Called before each of them: what the call is to return as its error, 0 for success, instead
    /// of asking the system; nothing to ask it.
    std::function<std::optional<int>(const std::string& call)> answer;

    /// For the calls.
    static std::optional<int> note(std::string call);
};
