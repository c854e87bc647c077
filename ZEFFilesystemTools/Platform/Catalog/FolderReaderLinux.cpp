// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Catalog/FolderReader.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"
#include "ZEFFilesystemTools/Platform/Disk/StatAt.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>

// A folder is opened in two steps: first by O_PATH, which needs no permission to read and lets the
// reader verify that it is the folder that is meant, and at the first read once more for reading.
// An entry of an open folder (`openIn`) is opened for reading at once, which is one call less.
//
// Entries are read in blocks of `readSize` into a buffer of the thread and copied to one of the
// folder's own that is as large as what was read, because a walk has many folders open and most are
// small.
//
// A walk can't keep a descriptor for every level above the one that it reads. `suspend` reads what
// is left into memory, so that `next` goes on without a descriptor, and closes the folder. When
// entries are to be looked at again, `resume` opens it by the shortest sure way: "../" from a
// folder below that the walk has just left (`resumeFrom`), otherwise the recorded path, otherwise
// the locator. Each way ends with the same check of identity (`openAt`).

namespace zef {
namespace {

bool isUnchanged(const Stat& stat, const FSRef& ref)
{
    return ref.hasNumbersOf(stat) && stat.hasBirthTime == ref.hasBirthTime()
        && (!stat.hasBirthTime || stat.birthTime == ref.birthTime());
}

bool isShortage(int error)
{
    return error == EMFILE || error == ENFILE;
}

constexpr std::size_t readSize = 32768;

// Far below what a path may have (PATH_MAX).
constexpr std::size_t mostLevelsAtOnce = 100;

// One for all the folders that a thread reads: a walk has many of them open, most are small, and
// each keeps no more than what was read.
std::byte* readBuffer()
{
    thread_local const std::unique_ptr<std::byte[]> buffer(new std::byte[readSize]);
    return buffer.get();
}

bool isDotOrDotDot(const char* name)
{
    return name[0] == '.' && (!name[1] || (name[1] == '.' && !name[2]));
}

} // namespace

FolderReader::~FolderReader()
{
    DescriptorReserve::shared().close(_folder);
    DescriptorReserve::shared().close(_folderBelow);
}

int FolderReader::open(const FSRef& ref, const FileURL& url)
{
    if (ref.isEmpty())
        return EINVAL;
    _ref = ref;
    _url = url;
    const int error = openAtPath(ref, url);
    if (error != ENOENT && error != ENOTDIR)
        return error;
    const auto found = Locator::shared().locate(ref, url);
    if (found && found != url)
        return openAtPath(ref, found);
    return found ? error : ENOENT;
}

int FolderReader::openIn(
    FolderReader& parent, const char* name, const FSRef& ref, const FileURL& url)
{
    if (!parent.resume())
        return EBADF;
    _ref = ref;
    _url = url;
    const int error = openAt(parent._folder, name, O_RDONLY, ref, nullptr);
    _isReadable = !error;
    // That it may not be read is said by the first read.
    return error == EACCES ? openAt(parent._folder, name, O_PATH, ref, nullptr) : error;
}

int FolderReader::openAtPath(const FSRef& ref, const FileURL& url)
{
    PathBytes path;
    if (!url.fileSystemRepresentation(path))
        return ENOENT;
    return openAt(AT_FDCWD, path.text(), O_PATH, ref, path.text());
}

// ENOENT also when another object is there. `path` leads to it, for the question about its handle;
// null to do without, where a changed birth time counts as another object.
int FolderReader::openAt(int parent, const char* name, int mode, const FSRef& ref, const char* path)
{
    const int folder = DescriptorReserve::shared().openAt(
        parent, name, mode | O_DIRECTORY | O_NOFOLLOW);
    if (folder < 0)
        return errno;
    Stat stat;
    const bool isIt = statAt(folder, "", stat) == 0
        && (path ? sameObject(stat, ref, path) : isUnchanged(stat, ref));
    if (!isIt) {
        DescriptorReserve::shared().close(folder);
        return ENOENT;
    }
    _folder = folder;
    return 0;
}

std::size_t FolderReader::countRest()
{
    if (!_isAtEnd)
        readRest();
    std::size_t count = 0;
    for (auto offset = _offset; offset < _length;) {
        const auto* record = reinterpret_cast<const dirent64*>(_buffer.get() + offset);
        offset += record->d_reclen;
        count += !isDotOrDotDot(record->d_name);
    }
    return count;
}

void FolderReader::suspend()
{
    if (_isReadable && !_isAtEnd && _folder >= 0)
        readRest();
    DescriptorReserve::shared().close(std::exchange(_folder, -1));
    DescriptorReserve::shared().close(std::exchange(_folderBelow, -1));
}

// An error stays for the end of what was read.
void FolderReader::readRest()
{
    std::vector<std::byte> rest;
    do {
        rest.insert(rest.end(), _buffer.get() + _offset, _buffer.get() + _length);
        _offset = _length;
    } while (fillBuffer());
    _buffer = std::make_unique<std::byte[]>(rest.size());
    std::copy(rest.begin(), rest.end(), _buffer.get());
    _offset = 0;
    _capacity = rest.size();
    _length = rest.size();
    _isAtEnd = true;
}

bool FolderReader::resume()
{
    if (_folder >= 0)
        return true;
    const int error = openAbove() == 0 ? 0 : open(_ref, _url);
    if (error || isShortage(_error))
        _error = error;
    return !error;
}

// A walk may come up from very far below through folders in which nothing is left to do: there is
// one descriptor for all of them, and one call of the system, or one in so many levels.
void FolderReader::resumeFrom(FolderReader& child)
{
    if (_folder >= 0 || _folderBelow >= 0)
        return;
    _levelsAbove = child._folder >= 0 ? 1 : child._levelsAbove + 1;
    _folderBelow = std::exchange(child._folder >= 0 ? child._folder : child._folderBelow, -1);
    if (_levelsAbove == mostLevelsAtOnce)
        openAbove();
}

int FolderReader::openAbove()
{
    const int below = std::exchange(_folderBelow, -1);
    if (below < 0)
        return EBADF;
    std::string path;
    for (std::size_t level = 0; level < _levelsAbove; ++level)
        path += "../";
    const int error = openAt(below, path.c_str(), O_PATH, _ref, nullptr);
    DescriptorReserve::shared().close(below);
    return error;
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
    // With a descriptor to spare it may go on.
    if (isShortage(_error) && !_isReadable)
        _error = 0;
    if (_error || _isAtEnd || (!_isReadable && (!resume() || !openForReading())))
        return false;
    const auto count = ::getdents64(_folder, readBuffer(), readSize);
    _isAtEnd = count == 0;
    if (count < 0)
        _error = errno;
    if (count <= 0)
        return false;
    _offset = 0;
    _length = static_cast<std::size_t>(count);
    if (_length > _capacity) {
        _buffer.reset(new std::byte[_length]);
        _capacity = _length;
    }
    std::memcpy(_buffer.get(), readBuffer(), _length);
    return true;
}

// Only now, so that a folder that may not be read is distinguished from one that is not there.
bool FolderReader::openForReading()
{
    auto& reserve = DescriptorReserve::shared();
    const int readable = reserve.openAt(_folder, ".", O_RDONLY | O_DIRECTORY);
    if (readable < 0) {
        _error = errno;
        return false;
    }
    reserve.close(std::exchange(_folder, readable));
    _isReadable = true;
    return true;
}

} // namespace zef
