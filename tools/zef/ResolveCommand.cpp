// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tools/zef/Commands.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/JSON/ArchiveJSON.h"
#include "tools/zef/JSON/FileJSON.h"
#include "tools/zef/JSON/JSONText.h"
#include "tools/zef/LineInput.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"
#include "tools/zef/Text.h"

#include <stdexcept>

#include <unistd.h>

namespace tool {
namespace {

// What `zef archive` writes is much shorter; what is parsed takes many times the memory.
constexpr std::size_t longestLine = std::size_t{ 1024 } * 1024;

class Resolver {
public:
    explicit Resolver(const ResolveOptions& options)
        : _options(options)
    {
    }

    int run();

private:
    void resolveLines();
    void resolve(const LineInput::Line&);
    void resolve(const ZEFArchiveDictionary&);
    void fail(const std::string& what, const std::string& reason);
    std::string nameOfLine() const { return "line " + std::to_string(_lineNumber); }

    const ResolveOptions& _options;
    LineInput _input{ longestLine };
    std::size_t _lineNumber = 0;
    bool _hasFailed = false;
};

int Resolver::run()
{
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

void Resolver::resolveLines()
{
    while (!mustEnd()) {
        const auto line = _input.takeLine();
        if (!line)
            return;
        ++_lineNumber;
        resolve(*line);
    }
}

// Throws std::invalid_argument for a line that is not an archive.
zef::Ref<ZEFArchiveDictionary> archiveIn(const LineInput::Line& line)
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

void Resolver::resolve(const LineInput::Line& line)
{
    try {
        const auto archive = archiveIn(line);
        resolve(*archive);
    } catch (const std::invalid_argument& error) {
        fail(nameOfLine(), error.what());
    }
}

void Resolver::resolve(const ZEFArchiveDictionary& archive)
{
    const auto& fileClass = FileClasses::printed(_options.plain, _options.json);
    if (const auto item = fileClass.newFileItemForArchiveDictionary(&archive)) {
        Output::standardOutput().write(_options.json ? jsonOfItem(item.get()).line()
                                                     : textForTerminal(item->url().path()) + '\n');
        return;
    }
    const auto* path = archive.stringForKey(ZEFArchivePathKey);
    fail(path && !path->empty() ? *path : nameOfLine(), "the file is gone");
}

void Resolver::fail(const std::string& what, const std::string& reason)
{
    _hasFailed = true;
    complain(what, reason);
}

} // namespace

int run(const ResolveOptions& options)
{
    return Resolver(options).run();
}

} // namespace tool
