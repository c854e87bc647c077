// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/OpenTrash.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Trash/TrashInfo.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zef {
namespace {

constexpr mode_t ownersAlone = 0700;
constexpr const char* nameOfShared = ".Trash";

std::string userNumber()
{
    return std::to_string(::geteuid());
}

std::string nameOfOwn()
{
    return nameOfShared + ("-" + userNumber());
}

// Null with errno where there is no folder; a link is none.
Ref<ObjectDescriptor> openFolder(int parent, const char* name, int flags)
{
    const int descriptor = DescriptorReserve::shared().openAt(
        parent, name, flags | O_DIRECTORY | O_NOFOLLOW);
    return descriptor < 0 ? nullptr : makeRef<ObjectDescriptor>(descriptor);
}

// The same; makes the folder where there is nothing.
Ref<ObjectDescriptor> openOrMake(int parent, const char* name, int flags)
{
    auto folder = openFolder(parent, name, flags);
    if (folder || errno != ENOENT)
        return folder;
    if (::mkdirat(parent, name, ownersAlone) != 0 && errno != EEXIST)
        return nullptr;
    return openFolder(parent, name, flags);
}

bool isOwn(const ObjectDescriptor& folder)
{
    struct stat info { };
    return ::fstatat(folder.descriptor(), "", &info, AT_EMPTY_PATH) == 0
        && info.st_uid == ::geteuid();
}

// Only there, nobody can take away what others put in (the administrator's choice).
bool isSticky(const ObjectDescriptor& folder)
{
    Stat stat;
    return folder.stat(stat) == 0 && stat.mode & S_ISVTX;
}

bool areOnOneVolume(const ObjectDescriptor& one, const ObjectDescriptor& other)
{
    Stat stat;
    Stat otherStat;
    std::uint64_t mountID = 0;
    std::uint64_t otherMountID = 0;
    return one.stat(stat, mountID) == 0 && other.stat(otherStat, otherMountID) == 0
        && mountID == otherMountID && stat.device == otherStat.device;
}

void makeFolders(const std::string& path)
{
    for (auto end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        ::mkdir(path.substr(0, end).c_str(), ownersAlone);
    ::mkdir(path.c_str(), ownersAlone);
}

TrashProblem unusable(int error)
{
    if (error == ENOTDIR || error == ELOOP)
        return { .error = error, .text = "the trash of its volume is not a folder" };
    return { .error = error };
}

} // namespace

OpenTrash::OpenTrash(Ref<ObjectDescriptor> files, Ref<ObjectDescriptor> infos, std::string top)
    : _files(std::move(files))
    , _infos(std::move(infos))
    , _top(std::move(top))
{
}

TrashProblem OpenTrash::openHome(const std::string& path, std::unique_ptr<OpenTrash>& place)
{
    makeFolders(path);
    const int descriptor = DescriptorReserve::shared().openAt(
        AT_FDCWD, path.c_str(), O_PATH | O_DIRECTORY);
    if (descriptor < 0)
        return unusable(errno);
    return open(makeRef<ObjectDescriptor>(descriptor), {}, place);
}

TrashProblem OpenTrash::openOnVolume(const ObjectDescriptor& top, std::unique_ptr<OpenTrash>& place)
{
    PathBytes path;
    if (!top.currentPath(path))
        return { .error = ENAMETOOLONG };
    const auto shared = openFolder(top.descriptor(), nameOfShared, O_PATH);
    if (shared && isSticky(*shared) && areOnOneVolume(top, *shared)) {
        const auto trash = openOrMake(shared->descriptor(), userNumber().c_str(), O_PATH);
        if (trash && !open(trash, std::string(path.view()), place))
            return {};
    }
    const auto trash = openOrMake(top.descriptor(), nameOfOwn().c_str(), O_PATH);
    if (!trash)
        return unusable(errno);
    if (!areOnOneVolume(top, *trash))
        return { .error = EXDEV };
    return open(trash, std::string(path.view()), place);
}

TrashProblem OpenTrash::open(
    const Ref<ObjectDescriptor>& trash, std::string top, std::unique_ptr<OpenTrash>& place)
{
    if (!isOwn(*trash))
        return { .error = EPERM, .text = "the trash of its volume belongs to another user" };
    auto files = openOrMake(trash->descriptor(), "files", O_PATH);
    if (!files)
        return unusable(errno);
    auto infos = openOrMake(trash->descriptor(), "info", O_RDONLY);
    if (!infos)
        return unusable(errno);
    for (const auto* folder : { files.get(), infos.get() }) {
        if (!areOnOneVolume(*trash, *folder))
            return { .error = EXDEV };
        if (::faccessat(folder->descriptor(), ".", W_OK | X_OK, AT_EACCESS) != 0)
            return unusable(errno);
    }
    std::unique_ptr<OpenTrash> opened(
        new OpenTrash(std::move(files), std::move(infos), std::move(top)));
    if (const int error = opened->_ascent.climb(trash))
        return { .error = error };
    opened->_ascent.closeTop();
    place = std::move(opened);
    return {};
}

bool OpenTrash::isNameOfTrash(std::string_view name)
{
    return name == nameOfShared || name == nameOfOwn();
}

int OpenTrash::writeInfo(
    const std::string& path, const std::string& name, Date date, std::string& chosen)
{
    const TrashName names(name);
    const auto text = trashInfoText(recordedPath(path), date);
    auto& number = _lastNumbers[name];
    int error = 0;
    do {
        chosen = names.numbered(++number);
        error = _infos.write(chosen, text);
    } while (error == EEXIST);
    return error;
}

std::string_view OpenTrash::recordedPath(std::string_view path) const
{
    if (_top.empty())
        return path;
    auto relative = path.substr(_top.size());
    if (relative.starts_with('/'))
        relative.remove_prefix(1);
    return relative;
}

} // namespace zef
