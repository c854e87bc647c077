// SPDX-License-Identifier: MIT
#include "tools/zef/CommandLine.h"

#include "tools/zef/Commands.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/Output.h"

// The only file that knows the parser: compiling it takes as long as half of the program.
#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <memory>
#include <sstream>

namespace tool {
namespace {

// The file manager keeps the interval in 32 bits.
bool isInterval(double seconds)
{
    const auto kept = static_cast<float>(seconds);
    return std::isfinite(kept) && kept > 0;
}

std::string checkInterval(const std::string& text)
{
    double seconds = 0;
    const bool isValid = CLI::detail::lexical_cast(text, seconds) && isInterval(seconds);
    return isValid ? "" : "\"" + text + "\" is not a positive number of seconds";
}

std::string checkDepth(const std::string& text)
{
    std::ptrdiff_t depth = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, depth);
    const bool isValid = error == std::errc() && stop == end;
    return isValid ? "" : "\"" + text + "\" is not a number of levels";
}

void checkFilters(const FindOptions& options)
{
    if (!options.plain || (!options.visible && !options.normal))
        return;
    throw CLI::ValidationError(options.visible ? "--visible" : "--normal",
        "plain file items don't know what people see, so it can't go with --plain");
}

void addPlain(CLI::App& command, bool& plain)
{
    command.add_flag("--plain", plain, "Use plain file items");
}

void addJSON(CLI::App& command, bool& json)
{
    command.add_flag("--json", json, "Print one JSON object a line");
}

// `paths` is one or a list of them.
void addPaths(CLI::App& command, auto& paths, const char* name, const char* description)
{
    command.add_option(name, paths, description)->type_name("")->required();
}

void declare(CLI::App& command, WatchOptions& options)
{
    command
        .add_option("--interval", options.interval, "Seconds between two checks of the folders (3)")
        ->type_name("S")
        ->check(CLI::Validator(checkInterval, "", "interval"));
    command.add_flag("--async", options.asynchronous, "Load the folders in the background");
    addPlain(command, options.plain);
    addJSON(command, options.json);
    addPaths(command, options.folders, "FOLDER", "Folders to watch");
}

void declare(CLI::App& command, FindOptions& options)
{
    command.add_option("--depth", options.depth, "Levels of folders to look into; -1 for all (-1)")
        ->type_name("N")
        ->check(CLI::Validator(checkDepth, "", "depth"));
    command.add_flag("--visible", options.visible, "Leave out what is hidden from people");
    command.add_flag("--normal", options.normal,
        "Skip packages and hidden folders, and follow aliases and links");
    addPlain(command, options.plain);
    addJSON(command, options.json);
    addPaths(command, options.paths, "PATH", "Files and folders to begin with");
    command.parse_complete_callback([&options] { checkFilters(options); });
}

void declare(CLI::App& command, ListOptions& options)
{
    addPlain(command, options.plain);
    addJSON(command, options.json);
    addPaths(command, options.folder, "FOLDER", "The folder");
}

void declare(CLI::App& command, InfoOptions& options)
{
    addPlain(command, options.plain);
    addPaths(command, options.paths, "PATH", "Files to describe");
    addJSON(command, options.json);
}

void declare(CLI::App& command, ArchiveOptions& options)
{
    addPlain(command, options.plain);
    addPaths(command, options.paths, "PATH", "Files to find again later");
}

void declare(CLI::App& command, ResolveOptions& options)
{
    addPlain(command, options.plain);
    addJSON(command, options.json);
}

void declare(CLI::App& command, TrashOptions& options)
{
    addPaths(command, options.paths, "PATH", "Files to move");
}

void declare(CLI::App& command, ServeOptions& options)
{
    command.add_flag(
        "--plain", options.plain, "Use plain file items until a client changes the class");
}

using Job = std::function<int()>;

// A command that sets `job` when the command line asks for it.
template <typename Options>
void addCommand(CLI::App& program, Job& job, const char* name, const char* description)
{
    auto& command = *program.add_subcommand(name, description);
    const auto options = std::make_shared<Options>();
    declare(command, *options);
    command.final_callback([&job, options] { job = [options] { return run(*options); }; });
}

void addCommands(CLI::App& program, Job& job)
{
    addCommand<WatchOptions>(
        program, job, "watch", "Print every change in folders until interrupted");
    addCommand<FindOptions>(program, job, "find", "Print files and everything beneath them");
    addCommand<ListOptions>(program, job, "list", "Print the contents of a folder");
    addCommand<InfoOptions>(program, job, "info", "Print what is known of files");
    addCommand<ArchiveOptions>(program, job, "archive",
        "Print references that find files again after a rename or move, one JSON object a line");
    addCommand<ResolveOptions>(program, job, "resolve",
        "Print where files are now, from the output of archive on standard input");
    addCommand<TrashOptions>(program, job, "trash", "Move files to the trash, all or none");
    addCommand<ServeOptions>(
        program, job, "serve", "Answer JSON-RPC 2.0 requests on standard input, one a line");
}

// The arguments, last one first, in a form in which the parser leaves every path as it is: it would
// take "[a,b]" for two values, and options that stand behind "--" for options when a path stands
// before it. Such a path gets "./" in front.
std::vector<std::string> parserArguments(int count, char** arguments)
{
    std::vector<std::string> result;
    bool onlyPathsFollow = false;
    for (int index = 1; index < count; ++index) {
        const std::string argument = arguments[index];
        if (!onlyPathsFollow && argument == "--") {
            onlyPathsFollow = true;
            continue;
        }
        const bool isMistakable = argument.starts_with('[')
            || (onlyPathsFollow && argument.starts_with('-'));
        result.push_back(isMistakable ? "./" + argument : argument);
    }
    std::reverse(result.begin(), result.end());
    return result;
}

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

} // namespace

int runCommandLine(int argumentCount, char** arguments)
{
    CLI::App program(
        "Follows files and folders by identity and reports what happens to them.", "zef");
    program.set_version_flag("--version", "zef " ZEF_VERSION);
    program.require_subcommand(1);
    Job job;
    addCommands(program, job);
    if (namesNoCommand(program, argumentCount, arguments)) {
        complain("there is no command " + std::string(arguments[1]));
        return ExitStatus::wrongUsage;
    }
    try {
        program.parse(parserArguments(argumentCount, arguments));
    } catch (const CLI::ParseError& error) {
        return statusOfParsing(program, error);
    }
    return job();
}

} // namespace tool
