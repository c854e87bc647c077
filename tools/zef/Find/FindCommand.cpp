// SPDX-License-Identifier: MIT
#include "tools/zef/Find/FindCommand.h"

#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileArgument.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/Find/DeniedFolders.h"
#include "tools/zef/Find/FileFinder.h"
#include "tools/zef/Interruption.h"
#include "tools/zef/ItemPrinter.h"
#include "tools/zef/LoadFailure.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <cerrno>
#include <charconv>
#include <cstring>

namespace tool {
namespace {

std::string checkDepth(const std::string& text)
{
    std::ptrdiff_t depth = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, depth);
    const bool isValid = error == std::errc() && stop == end;
    return isValid ? "" : "\"" + text + "\" is no number of levels";
}

// What comes after the ^C is to begin on a line of its own, where nobody has erased it.
void leaveTerminal(bool hasPrinted)
{
    const bool isErased = !hasPrinted && Output::standardError().isTerminal();
    if (Interruption::signal() && !isErased && Output::standardOutput().isTerminal())
        Output::standardOutput().write("\n");
}

} // namespace

FindCommand::FindCommand(CLI::App& program)
    : Command(program, "find", "Print files and everything beneath them")
{
    options()
        .add_option("--depth", _depth, "Levels of folders to look into; -1 for all (-1)")
        ->type_name("N")
        ->check(CLI::Validator(checkDepth, "", "depth"));
    options().add_flag("--visible", _visible, "Leave out what is hidden from people");
    options().add_flag("--normal", _normal,
        "Look into no package and no hidden folder, but where aliases and links lead");
    options().add_flag("--plain", _plain, "Use plain file items");
    options().add_flag("--json", _json, "Print one JSON object a line");
    options().add_option("PATH", _paths, "Where to begin")->type_name("")->required();
    options().parse_complete_callback([this] { checkOptions(); });
}

void FindCommand::checkOptions() const
{
    if (!_plain || (!_visible && !_normal))
        return;
    throw CLI::ValidationError(_visible ? "--visible" : "--normal",
        "plain file items don't know what people see, so it can't go with --plain");
}

int FindCommand::run()
{
    zef::setLogSink([this](std::string_view line) { noteLog(line); });
    const auto files = filesToIterate();
    const auto items = files->isEmpty() ? nullptr : found(*files);
    ZEFFileManager::defaultFileManager()->shutdown();
    if (items)
        printItems(*items, _json ? ItemFormat::json : ItemFormat::paths);
    leaveTerminal(items != nullptr);
    if (mustEnd())
        return statusOfEnd();
    return _hasFailed ? ExitStatus::failed : ExitStatus::done;
}

zef::Ref<ZEFFileItemArray> FindCommand::filesToIterate()
{
    auto files = zef::makeRef<ZEFFileItemArray>();
    for (const auto& path : _paths) {
        std::string reason;
        auto item = itemOfArgument(path, FileClasses::chosen(_plain), reason);
        if (item) {
            files->addObject(std::move(item));
            continue;
        }
        fail(path, reason);
    }
    return files;
}

zef::Ref<ZEFFileItemArray> FindCommand::found(const ZEFFileItemArray& files)
{
    const auto finder = zef::makeRef<FileFinder>(_progress);
    if (_visible)
        finder->loader().setFileFilter(ZEFVisibleFileFilter::filter());
    finder->loader().setDirectoryFilter(directoryFilter(files));
    return finder->find(files, _depth);
}

zef::Ref<ZEFDirectoryFilter> FindCommand::directoryFilter(const ZEFFileItemArray& files)
{
    const zef::Ref<ZEFDirectoryFilter> filter = _normal ? ZEFNormalDirectoryFilter::filter()
                                                        : ZEFDirectoryFilter::filter();
    auto result = zef::makeRef<DeniedFolders>(
        filter, [this](const std::string& path) { fail(path, std::strerror(EACCES)); });
    result->setWalk(files, _depth);
    return result;
}

// Any thread.
void FindCommand::fail(const std::string& path, const std::string& reason)
{
    _hasFailed = true;
    _progress.makeWay([&] { complain(path, reason); });
}

void FindCommand::noteLog(std::string_view line)
{
    const auto failure = LoadFailure::inLog(line);
    if (!failure)
        _progress.makeWay([&] { complain(line); });
    else if (!failure->isNoFolder)
        fail(failure->path, failure->reason);
}

} // namespace tool
