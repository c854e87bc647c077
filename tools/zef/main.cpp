// SPDX-License-Identifier: MIT
#include "tools/zef/Archive/ArchiveCommand.h"
#include "tools/zef/Arguments.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/Find/FindCommand.h"
#include "tools/zef/Info/InfoCommand.h"
#include "tools/zef/Interruption.h"
#include "tools/zef/List/ListCommand.h"
#include "tools/zef/Output.h"
#include "tools/zef/Resolve/ResolveCommand.h"
#include "tools/zef/Serve/ServeCommand.h"
#include "tools/zef/Trash/TrashCommand.h"
#include "tools/zef/Watch/WatchCommand.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace tool {
namespace {

// Help and version are what was asked for; everything else that ends the parsing is wrong usage.
int statusOfParsing(const CLI::App& program, const CLI::ParseError& error)
{
    if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success)) {
        complain(error.what());
        complain("see zef --help and zef COMMAND --help");
        return ExitStatus::wrongUsage;
    }
    std::ostringstream text;
    program.exit(error, text, text);
    Output::standardOutput().write(text.str());
    return statusOfOutput();
}

bool namesNoCommand(const CLI::App& program, int argumentCount, char** arguments)
{
    if (argumentCount < 2 || arguments[1][0] == '-')
        return false;
    return program
        .get_subcommands(
            [=](const CLI::App* command) { return command->get_name() == arguments[1]; })
        .empty();
}

int runProgram(int argumentCount, char** arguments)
{
    CLI::App program(
        "Follows files and folders by identity and reports what happens to them.", "zef");
    program.set_version_flag("--version", "zef " ZEF_VERSION);
    program.require_subcommand(1);
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<WatchCommand>(program));
    commands.push_back(std::make_unique<FindCommand>(program));
    commands.push_back(std::make_unique<ListCommand>(program));
    commands.push_back(std::make_unique<InfoCommand>(program));
    commands.push_back(std::make_unique<ArchiveCommand>(program));
    commands.push_back(std::make_unique<ResolveCommand>(program));
    commands.push_back(std::make_unique<TrashCommand>(program));
    commands.push_back(std::make_unique<ServeCommand>(program));

    if (namesNoCommand(program, argumentCount, arguments)) {
        complain("there is no command " + std::string(arguments[1]));
        return ExitStatus::wrongUsage;
    }
    try {
        auto parsed = parserArguments(argumentCount, arguments);
        std::reverse(parsed.begin(), parsed.end()); // as the parser wants them
        program.parse(std::move(parsed));
    } catch (const CLI::ParseError& error) {
        return statusOfParsing(program, error);
    }
    for (const auto& command : commands) {
        if (command->isChosen())
            return command->run();
    }
    return ExitStatus::wrongUsage;
}

} // namespace
} // namespace tool

int main(int argumentCount, char** arguments)
{
    try {
        tool::occupyStandardDescriptors();
        tool::Interruption::install();
        return tool::runProgram(argumentCount, arguments);
    } catch (const std::exception& error) {
        tool::complain(error.what());
        return tool::ExitStatus::failed;
    }
}
