// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Loading/ZEFAsynchronousFileLoader.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include "tools/zef/Commands.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileArgument.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/Interruption.h"
#include "tools/zef/ItemPrinter.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"
#include "tools/zef/ProgressLine.h"

#include <cerrno>
#include <cstring>

namespace tool {
namespace {

// 0 where the system has no words for it.
int systemError(zef::FileError error)
{
    switch (error) {
    case zef::FileError::accessDenied:
        return EACCES;
    case zef::FileError::notAFolder:
        return ENOTDIR;
    case zef::FileError::notFound:
    case zef::FileError::badReference:
        return ENOENT;
    case zef::FileError::tooManyOpenFiles:
        return EMFILE;
    case zef::FileError::outOfMemory:
        return ENOMEM;
    case zef::FileError::io:
        return EIO;
    default:
        return 0;
    }
}

std::string reasonOf(zef::FileError error)
{
    const int known = systemError(error);
    return known ? std::strerror(known)
                 : "it can't be listed: error " + std::to_string(numberOf(error));
}

// Loads files and what is beneath them while the thread's run loop turns, shows how far it is, and
// complains of what can't be found or listed.
class FileFinder final : public ZEFObject,
                         public ZEFAsynchronousFileLoaderDelegate,
                         public ZEFAsynchronousFileLoaderProgressDelegate,
                         public ZEFAsynchronousFileLoaderFailureDelegate {
public:
    explicit FileFinder(const FindOptions& options);

    // Everything that was found, once all is; null when there is nothing to begin with, or the
    // program had to end before.
    zef::Ref<ZEFFileItemArray> find();

    bool hasFailed() const { return _hasFailed; }

    void asynchronousFileLoaderUpdatedNumberOfFilesFound(
        ZEFAsynchronousFileLoader*, std::uint32_t count, ZEFFileItem* latestFile) override;
    void asynchronousFileLoaderFailedToListDirectory(
        ZEFAsynchronousFileLoader*, ZEFFileItem* directory, zef::FileError) override;
    void asynchronousFileLoaderFinishedFindingFiles(
        ZEFAsynchronousFileLoader*, ZEFFileItemArray* files) override;

private:
    ~FileFinder() override;

    zef::Ref<ZEFFileItemArray> filesToIterate();
    void fail(const std::string& path, const std::string& reason);

    const FindOptions& _options;
    ProgressLine& _progress = ProgressLine::shared();
    zef::Ref<ZEFAsynchronousFileLoader> _loader;
    zef::Ref<ZEFFileItemArray> _found;
    bool _hasFailed = false;
};

FileFinder::FileFinder(const FindOptions& options)
    : _options(options)
    , _loader(zef::makeRef<ZEFAsynchronousFileLoader>(this))
{
    if (options.visible)
        _loader->setFileFilter(ZEFVisibleFileFilter::filter());
    if (options.normal)
        _loader->setDirectoryFilter(ZEFNormalDirectoryFilter::filter());
}

FileFinder::~FileFinder()
{
    _loader->cancel();
}

zef::Ref<ZEFFileItemArray> FileFinder::find()
{
    const auto files = filesToIterate();
    if (files->isEmpty())
        return nullptr;
    _loader->startRecursivelyWithFilesToDepth(files.get(), _options.depth);
    while (_loader->isLoading() && !mustEnd()) {
        if (waitForWork(-1).runLoopIsDue)
            zef::RunLoop::current().perform();
    }
    _loader->cancel();
    _progress.erase();
    return _found;
}

zef::Ref<ZEFFileItemArray> FileFinder::filesToIterate()
{
    const auto& fileClass = FileClasses::printed(_options.plain, _options.json);
    auto files = zef::makeRef<ZEFFileItemArray>();
    for (const auto& path : _options.paths) {
        std::string reason;
        if (auto item = itemOfArgument(path, fileClass, reason))
            files->addObject(std::move(item));
        else
            fail(path, reason);
    }
    return files;
}

void FileFinder::asynchronousFileLoaderUpdatedNumberOfFilesFound(
    ZEFAsynchronousFileLoader*, std::uint32_t count, ZEFFileItem* latestFile)
{
    const auto url = latestFile ? latestFile->url() : zef::FileURL();
    _progress.show(count, url ? url.path() : std::string());
}

void FileFinder::asynchronousFileLoaderFailedToListDirectory(
    ZEFAsynchronousFileLoader*, ZEFFileItem* directory, zef::FileError error)
{
    // Block devices and sockets are taken for folders until then.
    if (error == zef::FileError::notAFolder)
        return;
    const auto url = directory->url();
    fail(url ? url.path() : "a folder that is gone", reasonOf(error));
}

void FileFinder::asynchronousFileLoaderFinishedFindingFiles(
    ZEFAsynchronousFileLoader*, ZEFFileItemArray* files)
{
    _found = files;
}

void FileFinder::fail(const std::string& path, const std::string& reason)
{
    _hasFailed = true;
    _progress.makeWay([&] { complain(path, reason); });
}

// Any thread. What the load logs comes to the loader's delegate too.
void showLog(std::string_view line)
{
    if (!line.starts_with(ZEFFileLoadOperation::classObject.name))
        ProgressLine::shared().makeWay([&] { complain(line); });
}

// What comes after the ^C is to begin on a line of its own, where nobody has erased it.
void leaveTerminal(bool hasPrinted)
{
    const bool isErased = !hasPrinted && Output::standardError().isTerminal();
    if (Interruption::signal() && !isErased && Output::standardOutput().isTerminal())
        Output::standardOutput().write("\n");
}

} // namespace

int run(const FindOptions& options)
{
    zef::setLogSink(showLog);
    const auto finder = zef::makeRef<FileFinder>(options);
    const auto items = finder->find();
    ZEFFileManager::defaultFileManager()->shutdown();
    if (items)
        printItems(*items, options.json);
    leaveTerminal(items != nullptr);
    if (mustEnd())
        return statusOfEnd();
    return finder->hasFailed() ? ExitStatus::failed : ExitStatus::done;
}

} // namespace tool
