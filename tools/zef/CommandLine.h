// SPDX-License-Identifier: MIT
#pragma once

namespace tool {

/// Does what the command line asks for, or says why it is wrong; returns the exit status.
int runCommandLine(int argumentCount, char** arguments);

} // namespace tool
