// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashItem.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>

namespace zef {
namespace {

// As rename(2), but never in place of something. Some file systems (FUSE) don't know how to do that
// in one step.
int renameToFreeName(int from, const std::string& name, int to, const std::string& newName)
{
    if (::renameat2(from, name.c_str(), to, newName.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    Stat stat;
    const int error = statAt(to, newName.c_str(), stat);
    if (error != ENOENT)
        return error ? error : EEXIST;
    return ::renameat(from, name.c_str(), to, newName.c_str()) == 0 ? 0 : errno;
}

bool areSame(const Stat& one, const Stat& other)
{
    return ObjectNumbers::of(one) == ObjectNumbers::of(other)
        && one.hasBirthTime == other.hasBirthTime && one.birthTime == other.birthTime;
}

} // namespace

TrashItem::TrashItem(
    std::size_t index, SourceFolder& folder, std::string name, const Stat& stat, OpenTrash& trash)
    : _index(index)
    , _folder(&folder)
    , _trash(&trash)
    , _name(std::move(name))
    , _stat(stat)
{
}

int TrashItem::writeInfo(Date date)
{
    auto chosen = _trash->writeInfo(_folder->pathOfEntry(_name), _name, date);
    const int error = chosen.error();
    if (chosen)
        _nameInTrash = *std::move(chosen);
    return error;
}

int TrashItem::move(Date date)
{
    const int descriptor = DescriptorReserve::shared().openAt(
        _folder->descriptor(), _name.c_str(), O_PATH | O_NOFOLLOW);
    if (descriptor < 0)
        return errno;
    const auto object = makeRef<ObjectDescriptor>(descriptor);
    Stat stat;
    if (const int error = object->stat(stat))
        return error;
    if (!areSame(stat, _stat))
        return ESTALE;
    if (const int error = rename(date))
        return error;
    return verify(*object);
}

int TrashItem::rename(Date date)
{
    for (;;) {
        const int error = renameToFreeName(
            _folder->descriptor(), _name, _trash->files(), _nameInTrash);
        if (error != EEXIST) {
            _isMoved = !error;
            return error;
        }
        // A file that lies in the trash without a record.
        removeInfo();
        if (const int infoError = writeInfo(date))
            return infoError;
        if (const int infoError = _trash->infos().synchronise())
            return infoError;
    }
}

// Between the look at the file and its move another one may have come to its name. The descriptor
// is asked again because overlayfs gives a file another birth time when it moves it.
int TrashItem::verify(const ObjectDescriptor& object)
{
    Stat moved;
    Stat stat;
    if (const int error = statAt(_trash->files(), _nameInTrash.c_str(), moved))
        return error;
    if (const int error = object.stat(stat))
        return error;
    return areSame(moved, stat) ? 0 : ESTALE;
}

int TrashItem::undo()
{
    if (_isMoved) {
        const int error = renameToFreeName(
            _trash->files(), _nameInTrash, _folder->descriptor(), _name);
        if (error)
            return error;
        _isMoved = false;
    }
    removeInfo();
    return 0;
}

void TrashItem::removeInfo()
{
    if (!_nameInTrash.empty())
        _trash->infos().remove(std::exchange(_nameInTrash, {}));
}

} // namespace zef
