// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/FolderReader.h"

#include "ZEFFilesystemTools/Platform/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/LinuxCalls.h"
#include "ZEFFilesystemTools/Platform/Locator.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <dirent.h>
#include <fcntl.h>

namespace zef {
namespace {

bool isDotOrDotDot(const char* name)
{
    return name[0] == '.' && (!name[1] || (name[1] == '.' && !name[2]));
}

} // namespace

FolderReader::~FolderReader()
{
    DescriptorReserve::shared().close(_folder);
}

int FolderReader::open(const FSRef& ref, const FileURL& url)
{
    if (ref.isEmpty())
        return EINVAL;
    const int error = openAtPath(ref, url);
    if (error != ENOENT && error != ENOTDIR)
        return error;
    const auto found = Locator::shared().locate(ref, url);
    if (found && found != url)
        return openAtPath(ref, found);
    return found ? error : ENOENT;
}

// ENOENT also when another object is at the path.
int FolderReader::openAtPath(const FSRef& ref, const FileURL& url)
{
    PathBytes path;
    if (!url.fileSystemRepresentation(path))
        return ENOENT;
    const int folder = DescriptorReserve::shared().openAt(
        AT_FDCWD, path.text(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
    if (folder < 0)
        return errno;
    Stat stat;
    if (statAt(folder, "", stat) != 0 || !sameObject(stat, ref, path.text())) {
        DescriptorReserve::shared().close(folder);
        return ENOENT;
    }
    _folder = folder;
    return 0;
}

bool FolderReader::next(Entry& entry)
{
    for (;;) {
        if (_offset == _length && !fillBuffer())
            return false;
        const auto* record = reinterpret_cast<const dirent64*>(_buffer.get() + _offset);
        _offset += record->d_reclen;
        if (isDotOrDotDot(record->d_name))
            continue;
        entry = { .name = record->d_name,
            .nameLength = std::strlen(record->d_name),
            .inode = record->d_ino };
        return true;
    }
}

bool FolderReader::fillBuffer()
{
    if (_error || (!_isReadable && !openForReading()))
        return false;
    const auto count = ::getdents64(_folder, _buffer.get(), bufferSize);
    if (count < 0)
        _error = errno;
    if (count <= 0)
        return false;
    _offset = 0;
    _length = static_cast<std::size_t>(count);
    return true;
}

// Only now, so that a folder that may not be read is told from one that is not there.
bool FolderReader::openForReading()
{
    auto& reserve = DescriptorReserve::shared();
    const int readable = reserve.openAt(_folder, ".", O_RDONLY | O_DIRECTORY);
    if (readable < 0) {
        _error = errno;
        return false;
    }
    reserve.close(std::exchange(_folder, readable));
    // Left as it is: the system writes before anybody reads.
    _buffer.reset(new std::byte[bufferSize]);
    _isReadable = true;
    return true;
}

} // namespace zef
