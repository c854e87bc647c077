// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/ServeCommand.h"

#include "tools/zef/FileClasses.h"
#include "tools/zef/Serve/Server.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace tool {

ServeCommand::ServeCommand(CLI::App& program)
    : Command(program, "serve", "Answer JSON-RPC 2.0 requests on standard input, one a line")
{
    options().add_flag("--plain", _plain, "Use plain file items until a client chooses");
}

int ServeCommand::run()
{
    return Server(FileClasses::chosen(_plain)).run();
}

} // namespace tool
