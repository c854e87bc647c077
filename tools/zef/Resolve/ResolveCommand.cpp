// SPDX-License-Identifier: MIT
#include "tools/zef/Resolve/ResolveCommand.h"

#include "tools/zef/ArchiveJSON.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/JSONText.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"
#include "tools/zef/Text.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <stdexcept>

#include <unistd.h>

namespace tool {

ResolveCommand::ResolveCommand(CLI::App& program)
    : Command(program, "resolve",
        "Print where the files are now of which standard input holds what archive printed")
{
    options().add_flag("--plain", _plain, "Use plain file items");
    options().add_flag("--json", _json, "Print one JSON object a line");
}

int ResolveCommand::run()
{
    zef::setLogSink([](std::string_view line) { complain(line); });
    while (!_input.hasEnded()) {
        const auto wakeUp = waitForWork(STDIN_FILENO);
        if (mustEnd())
            return statusOfEnd();
        if (wakeUp.hasInput) {
            _input.read();
            resolveLines();
        } else if (wakeUp.runLoopIsDue) {
            zef::RunLoop::current().perform();
        }
    }
    if (mustEnd())
        return statusOfEnd();
    return _hasFailed || _input.hasFailed() ? ExitStatus::failed : ExitStatus::done;
}

// Throws std::invalid_argument for a line that is no archive.
zef::Ref<ZEFArchiveDictionary> ResolveCommand::archiveIn(const LineReader::Line& line)
{
    if (line.isTooLong)
        throw std::invalid_argument("longer than " + std::to_string(longestLine) + " bytes");
    const JSONText text(line.text);
    auto archive = archiveOfJSON(text.parsed());
    // A name that lost a byte must not be taken for another file's.
    if (text.hasInvalidCharacters())
        throw std::invalid_argument("no valid Unicode");
    if (archive->isEmpty())
        throw std::invalid_argument("nothing in it leads to a file");
    return archive;
}

void ResolveCommand::resolveLines()
{
    while (!mustEnd()) {
        const auto line = _input.takeLine();
        if (!line)
            return;
        ++_lineNumber;
        resolve(*line);
    }
}

void ResolveCommand::resolve(const LineReader::Line& line)
{
    try {
        const auto archive = archiveIn(line);
        resolve(*archive);
    } catch (const std::invalid_argument& error) {
        fail(nameOfLine(), error.what());
    }
}

void ResolveCommand::resolve(const ZEFArchiveDictionary& archive)
{
    const auto item = FileClasses::chosen(_plain).newFileItemForArchiveDictionary(&archive);
    if (item)
        return show(*item);
    const auto* path = archive.stringForKey(ZEFArchivePathKey);
    fail(path && !path->empty() ? *path : nameOfLine(), "the file is gone");
}

void ResolveCommand::show(const ZEFFileItem& item) const
{
    Output::standardOutput().write(
        _json ? lineOfJSON(jsonOfItem(&item)) : textForTerminal(item.url().path()) + '\n');
}

void ResolveCommand::fail(const std::string& what, const std::string& reason)
{
    _hasFailed = true;
    complain(what, reason);
}

std::string ResolveCommand::nameOfLine() const
{
    return "line " + std::to_string(_lineNumber);
}

} // namespace tool
