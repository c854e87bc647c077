// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// Runs this very program anew with other arguments and returns what it writes to its standard
/// output; empty when it can't be run.
std::string outputOfThisProgram(std::vector<std::string> arguments);
