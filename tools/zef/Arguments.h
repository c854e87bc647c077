// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace tool {

/// The arguments of the command line, without the program's name, in a form in which the parser
/// leaves every path as it is: it would take "[a,b]" for two values, and options that stand behind
/// "--" for options when a path stands before it. Such a path gets "./" in front.
std::vector<std::string> parserArguments(int count, char** arguments);

} // namespace tool
