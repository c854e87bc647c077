// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/ServeCommand.h"

#include "tools/zef/Serve/Server.h"

namespace tool {

ServeCommand::ServeCommand(CLI::App& program)
    : Command(program, "serve", "Answer JSON-RPC 2.0 requests on standard input, one a line")
{
}

int ServeCommand::run()
{
    return Server().run();
}

} // namespace tool
