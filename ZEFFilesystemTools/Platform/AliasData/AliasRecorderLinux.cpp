// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/AliasRecorder.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include <fcntl.h>

namespace zef {
namespace {

constexpr double longestTick = 0.1; // far longer than any kernel's

struct FreeDeleter {
    void operator()(char* text) const { std::free(text); }
};

// The path without links on the way; the object itself may be one. Empty with errno on failure.
std::string pathWithoutLinks(const char* path)
{
    const std::string_view text(path);
    const auto slash = text.rfind('/');
    if (text == "/")
        return "/";
    const std::string folder(text.substr(0, std::max<std::size_t>(slash, 1)));
    const std::unique_ptr<char, FreeDeleter> real(::realpath(folder.c_str(), nullptr));
    if (!real)
        return {};
    std::string result = real.get();
    if (result == "/")
        result.clear();
    return result.append(text.substr(slash));
}

// A file that takes another's number within one tick of the kernel's clock has its birth time too.
bool isConclusive(std::int64_t birthTime)
{
    return Clock::system().now().secondsSince1970() - static_cast<double>(birthTime) / 1e9
        > longestTick;
}

struct Step {
    Stat stat;
    std::uint64_t mountID = 0;
};

bool isOnSameMount(const Step& one, const Step& other)
{
    return one.mountID && other.mountID ? one.mountID == other.mountID
                                        : one.stat.device == other.stat.device;
}

std::string folderOf(const std::string& path)
{
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

} // namespace

Expected<AliasRecord> AliasRecorder::make(const FSRef& ref, const FileURL& url)
{
    ObjectPlace place;
    if (const auto error = place.findOrRecall(ref, url); error != FileError::none)
        return error;
    _device = place.stat().device;
    _record.inode = place.stat().inode;
    _record.birthTime = place.stat().birthTime;
    _record.hasBirthTime = place.stat().hasBirthTime;
    const auto path = pathWithoutLinks(place.path());
    if (path.empty())
        return fileErrorOfErrno(errno);
    if (const auto error = takeWay(path.c_str()); error != FileError::none)
        return error;
    takeIdentity(ref, path.c_str());
    // Only now, so that all of this was of one object.
    const auto error = place.findOrRecall(ref, FileURL::fromPath(path, URLKind::file));
    if (error != FileError::none)
        return error;
    return std::move(_record);
}

void AliasRecorder::takeIdentity(const FSRef& ref, const char* path)
{
    const auto& mountPoint = _record.volume.mountPoint;
    if (_identities.hasLastingNumbers(mountPoint.c_str(), _device))
        _record.handle = ref.hasHandle() ? ref.handle() : FileSystem::shared().handle(path);
    if (_record.handle.isKnown() && _record.hasBirthTime && !isConclusive(_record.birthTime))
        _record.hasBirthTime = false;
}

// Up to the first folder that is on another mount; the mount point is the last one before.
FileError AliasRecorder::takeWay(const char* path)
{
    std::string here = path;
    Step step;
    int error = statAt(AT_FDCWD, here.c_str(), step.stat, step.mountID);
    while (!error && here != "/") {
        const auto above = folderOf(here);
        Step next;
        error = statAt(AT_FDCWD, above.c_str(), next.stat, next.mountID);
        if (error || !isOnSameMount(step, next))
            break;
        const auto nameOffset = here.rfind('/') + 1;
        _record.chain.push_back({ step.stat.inode, here.substr(nameOffset) });
        step = next;
        here = above;
    }
    if (error)
        return fileErrorOfErrno(error);
    std::reverse(_record.chain.begin(), _record.chain.end());
    auto volume = _identities.identity(here, step.stat.device, step.mountID);
    if (!volume)
        return FileError::io;
    _record.volume = *std::move(volume);
    return FileError::none;
}

} // namespace zef
