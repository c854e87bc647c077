// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

namespace zef {
namespace {

constexpr std::uint32_t versionOneMagic = 0x0152465a; // "ZFR" and 1

enum Flag : std::uint8_t {
    birthTimeKnown = 1,
    handleDecodable = 2,
    folder = 4,
    handleIsDigest = 8,
};

} // namespace

FSRef::FSRef(const Stat& stat, std::uint64_t parentInode)
    : _magic(versionOneMagic)
    , _device(stat.device)
    , _inode(stat.inode)
    , _parentInode(parentInode)
{
    if (stat.isFolder())
        _flags |= folder;
    if (!stat.hasBirthTime)
        return;
    _flags |= birthTimeKnown;
    _birthTime = stat.birthTime;
}

bool FSRef::isFolder() const
{
    return _flags & folder;
}

bool FSRef::hasBirthTime() const
{
    return _flags & birthTimeKnown;
}

void FSRef::setParentInode(std::uint64_t inode)
{
    _parentInode = inode;
}

FileHandle FSRef::handle() const
{
    return { .type = _handleType,
        .length = _handleLength,
        .isDigest = (_flags & handleIsDigest) != 0,
        .isDecodable = (_flags & handleDecodable) != 0,
        .bytes = _handle };
}

void FSRef::setHandle(const FileHandle& handle)
{
    _handleType = handle.type;
    _handleLength = handle.length;
    _handle = handle.bytes;
    _flags &= static_cast<std::uint8_t>(~(handleDecodable | handleIsDigest));
    if (handle.isDecodable)
        _flags |= handleDecodable;
    if (handle.isDigest)
        _flags |= handleIsDigest;
}

bool FSRef::hasNumbersOf(const FSRef& other) const
{
    return _device == other._device && _inode == other._inode;
}

bool FSRef::hasNumbersOf(const Stat& stat) const
{
    return _device == stat.device && _inode == stat.inode;
}

bool sameObject(const Stat& stat, const FSRef& recorded, const char* path)
{
    if (!recorded.hasNumbersOf(stat))
        return false;
    if (!stat.hasBirthTime || !recorded.hasBirthTime() || stat.birthTime == recorded.birthTime())
        return true;
    return recorded.hasHandle() && FileSystem::shared().handle(path) == recorded.handle();
}

} // namespace zef
