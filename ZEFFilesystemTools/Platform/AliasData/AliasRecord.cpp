// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/AliasRecord.h"

#include "ZEFFilesystemTools/Platform/AliasData/ByteReader.h"
#include "ZEFFilesystemTools/Platform/AliasData/ByteWriter.h"
#include "ZEFFilesystemTools/Platform/Disk/FNVDigest.h"

#include <algorithm>
#include <climits>
#include <span>
#include <string_view>

namespace zef {
namespace {

constexpr std::string_view magic = "ZEFA";
constexpr std::uint8_t version = 1;
constexpr std::size_t headerLength = 4 + 1 + 4 + 8;
constexpr std::size_t longestType = 64;
constexpr std::size_t longestMountPoint = PATH_MAX;
constexpr std::size_t longestName = 255;
constexpr std::size_t longestHandle = 128;

enum Flag : std::uint8_t {
    birthTimeKnown = 1,
    handleDecodable = 2,
    handleIsDigest = 4,
};

bool isName(std::string_view text)
{
    constexpr std::string_view forbidden("/\0", 2);
    return !text.empty() && text.size() <= longestName && text != "." && text != ".."
        && text.find_first_of(forbidden) == text.npos;
}

bool isAbsolutePath(std::string_view text)
{
    return text.starts_with('/') && text.size() <= longestMountPoint
        && text.find('\0') == text.npos;
}

bool isWellFormed(const AliasRecord& record)
{
    return record.volume.type.size() <= longestType && isAbsolutePath(record.volume.mountPoint)
        && record.chain.size() <= AliasRecord::mostComponents
        && std::all_of(record.chain.begin(), record.chain.end(),
            [](const auto& component) { return isName(component.name); });
}

std::uint8_t flagsOf(const AliasRecord& record)
{
    unsigned flags = 0;
    if (record.hasBirthTime)
        flags |= birthTimeKnown;
    if (record.handle.isDecodable)
        flags |= handleDecodable;
    if (record.handle.isDigest)
        flags |= handleIsDigest;
    return static_cast<std::uint8_t>(flags);
}

// Handles that are too long to be kept whole are kept as their digest, as when they are asked for.
bool readHandle(ByteReader& reader, std::uint8_t flags, FileHandle& handle)
{
    std::uint8_t type = 0;
    std::uint8_t length = 0;
    std::string_view bytes;
    if (!reader.read(type) || !reader.read(length) || length > longestHandle
        || !reader.readBytes(length, bytes))
        return false;
    const bool isDigest = flags & handleIsDigest;
    handle = FileHandle::of(
        type, std::as_bytes(std::span(bytes)), (flags & handleDecodable) && !isDigest);
    handle.isDigest |= isDigest;
    return true;
}

bool readVolume(ByteReader& reader, VolumeIdentity& volume)
{
    std::string_view uuid;
    if (!reader.readText(longestType, volume.type) || !reader.readBytes(volume.uuid.size(), uuid)
        || !reader.read(volume.fileSystemID))
        return false;
    std::transform(uuid.begin(), uuid.end(), volume.uuid.begin(),
        [](char byte) { return static_cast<std::uint8_t>(byte); });
    return true;
}

bool readChain(ByteReader& reader, std::vector<AliasRecord::Component>& chain)
{
    std::uint16_t count = 0;
    if (!reader.read(count) || count > AliasRecord::mostComponents)
        return false;
    chain.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        auto& component = chain.emplace_back();
        if (!reader.read(component.inode) || !reader.readText(longestName, component.name)
            || !isName(component.name))
            return false;
    }
    return true;
}

bool readBody(ByteReader& reader, AliasRecord& record)
{
    std::uint8_t flags = 0;
    if (!reader.read(flags) || !reader.read(record.inode) || !reader.read(record.birthTime))
        return false;
    record.hasBirthTime = flags & birthTimeKnown;
    return readVolume(reader, record.volume) && readHandle(reader, flags, record.handle)
        && reader.readText(longestMountPoint, record.volume.mountPoint)
        && isAbsolutePath(record.volume.mountPoint) && readChain(reader, record.chain)
        && reader.isAtEnd();
}

} // namespace

AliasData::Bytes AliasRecord::encode() const
{
    if (!isWellFormed(*this))
        return {};
    ByteWriter body;
    body.write(flagsOf(*this));
    body.write(inode);
    body.write(static_cast<std::uint64_t>(birthTime));
    body.writeText(volume.type);
    body.writeBytes(volume.uuid.data(), volume.uuid.size());
    body.write(volume.fileSystemID);
    body.write(handle.type);
    body.write(handle.length);
    body.writeBytes(handle.bytes.data(), handle.length);
    body.writeText(volume.mountPoint);
    body.write(static_cast<std::uint16_t>(chain.size()));
    for (const auto& component : chain) {
        body.write(component.inode);
        body.writeText(component.name);
    }
    const auto& bytes = body.bytes();
    if (bytes.size() > mostBytes - headerLength)
        return {};
    ByteWriter whole;
    whole.writeBytes(magic.data(), magic.size());
    whole.write(version);
    whole.write(static_cast<std::uint32_t>(bytes.size()));
    whole.write(fnvDigest(bytes));
    whole.writeBytes(bytes.data(), bytes.size());
    return whole.takeBytes();
}

std::optional<AliasRecord> AliasRecord::decode(const AliasData::Bytes& bytes)
{
    if (bytes.size() < headerLength || bytes.size() > mostBytes)
        return std::nullopt;
    ByteReader reader(bytes.data(), bytes.size());
    std::string_view name;
    std::uint8_t form = 0;
    std::uint32_t length = 0;
    std::uint64_t digest = 0;
    if (!reader.readBytes(magic.size(), name) || name != magic || !reader.read(form)
        || form != version || !reader.read(length) || !reader.read(digest)
        || length != bytes.size() - headerLength
        || digest != fnvDigest(std::span(bytes).subspan(headerLength)))
        return std::nullopt;
    std::optional<AliasRecord> record(std::in_place);
    if (!readBody(reader, *record))
        record.reset();
    return record;
}

bool AliasRecord::path(PathBytes& path) const
{
    path.clear();
    if (volume.mountPoint != "/" && !path.append(volume.mountPoint))
        return false;
    for (const auto& component : chain) {
        if (!path.append("/") || !path.append(component.name))
            return false;
    }
    return path.length() || path.append("/");
}

std::uint64_t AliasRecord::parentInode() const
{
    return chain.size() > 1 ? chain[chain.size() - 2].inode : 0;
}

} // namespace zef
