// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/OpenTrash.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// A trash is a folder with two folders in it, `files` and `info`. It is used only if nobody else
// can have made it what it is: each of the three is a real folder, the trash belongs to this user,
// and all lie on the volume of the files, in the same mount, so that a file goes there by a mere
// rename. Everything is opened relative to what was opened and examined before, so that a path that
// changes meanwhile leads nowhere else.
//
// The home trash is made with the folders above it. A volume has two places: `.Trash/UID`, if an
// administrator made a `.Trash` that is sticky, and `.Trash-UID`, which is made on demand. Whatever
// is wrong with the first, the second one is tried.

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

// Null with errno where there is no folder; a link is not a folder.
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

OpenTrash::Opened OpenTrash::openHome(const std::string& path)
{
    makeFolders(path);
    const int descriptor = DescriptorReserve::shared().openAt(
        AT_FDCWD, path.c_str(), O_PATH | O_DIRECTORY);
    if (descriptor < 0)
        return unusable(errno);
    return open(makeRef<ObjectDescriptor>(descriptor), {});
}

OpenTrash::Opened OpenTrash::openOnVolume(const ObjectDescriptor& top)
{
    PathBytes path;
    if (!top.currentPath(path))
        return TrashProblem{ .error = ENAMETOOLONG };
    const auto shared = openFolder(top.descriptor(), nameOfShared, O_PATH);
    if (shared && isSticky(*shared) && areOnOneVolume(top, *shared)) {
        const auto trash = openOrMake(shared->descriptor(), userNumber().c_str(), O_PATH);
        if (trash) {
            auto opened = open(trash, std::string(path.view()));
            if (opened)
                return opened;
        }
    }
    const auto trash = openOrMake(top.descriptor(), nameOfOwn().c_str(), O_PATH);
    if (!trash)
        return unusable(errno);
    if (!areOnOneVolume(top, *trash))
        return TrashProblem{ .error = EXDEV };
    return open(trash, std::string(path.view()));
}

OpenTrash::Opened OpenTrash::open(const Ref<ObjectDescriptor>& trash, std::string top)
{
    if (!isOwn(*trash))
        return TrashProblem{ .error = EPERM,
            .text = "the trash of its volume belongs to another user" };
    auto files = openOrMake(trash->descriptor(), "files", O_PATH);
    if (!files)
        return unusable(errno);
    auto infos = openOrMake(trash->descriptor(), "info", O_RDONLY);
    if (!infos)
        return unusable(errno);
    for (const auto* folder : { files.get(), infos.get() }) {
        if (!areOnOneVolume(*trash, *folder))
            return TrashProblem{ .error = EXDEV };
        if (::faccessat(folder->descriptor(), ".", W_OK | X_OK, AT_EACCESS) != 0)
            return unusable(errno);
    }
    std::unique_ptr<OpenTrash> opened(
        new OpenTrash(std::move(files), std::move(infos), std::move(top)));
    if (const int error = opened->_ascent.climb(trash))
        return TrashProblem{ .error = error };
    opened->_ascent.closeTop();
    return opened;
}

bool OpenTrash::isNameOfTrash(std::string_view name)
{
    return name == nameOfShared || name == nameOfOwn();
}

Expected<std::string, int> OpenTrash::writeInfo(
    const std::string& path, const std::string& name, Date date)
{
    const TrashName names(name);
    const auto text = trashInfoText(recordedPath(path), date);
    auto& number = _lastNumbers[name];
    for (;;) {
        auto chosen = names.numbered(++number);
        const int error = _infos.write(chosen, text);
        if (!error)
            return chosen;
        if (error != EEXIST)
            return error;
    }
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
