// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Other ways to walk a tree in a program and to keep their own record of every entry; each is
/// asked something, so that it has looked at the file itself.
///
/// All are single-threaded, and return how many entries they found below `path`.
namespace peers {

std::size_t standardLibrary(const std::string& path);

bool hasGIO();
/// 0 where GLib was not there when this was built.
std::size_t gio(const std::string& path);

bool hasQt();
/// 0 where Qt was not there when this was built.
std::size_t qt(const std::string& path);

/// Runs a program from PATH with its output thrown away, waits for its end, and returns the seconds
/// of processor time that it used, on all its threads; negative when it is not there.
double secondsOfProgram(const std::vector<std::string>& command);

} // namespace peers
