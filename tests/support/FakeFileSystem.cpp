// SPDX-License-Identifier: MIT
#include "tests/support/FakeFileSystem.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <system_error>

struct FakeFileSystem::Node {
    zef::Stat stat;
    zef::FileHandle handle;
    std::string target;
    Entries entries;
};

namespace {

constexpr std::uint32_t fileMode = 0100644;
constexpr std::uint32_t folderMode = 0040755;
constexpr std::uint32_t linkMode = 0120777;
constexpr std::int64_t nanosecondsAChange = 1'000'000;
constexpr int mostLinks = 40;

std::vector<std::string> namesOf(std::string_view path)
{
    std::vector<std::string> names;
    while (!path.empty()) {
        const auto end = std::min(path.find('/'), path.size());
        if (end)
            names.emplace_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return names;
}

std::string_view parentOf(std::string_view path)
{
    return path.substr(0, path.rfind('/') + 1);
}

std::string_view nameOf(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

void check(int error, std::string_view what)
{
    if (error)
        throw std::system_error(error, std::generic_category(), std::string(what));
}

} // namespace

FakeFileSystem::FakeFileSystem()
    : _root(makeNode(folderMode))
{
    replaceShared(this);
}

FakeFileSystem::~FakeFileSystem()
{
    replaceShared(nullptr);
}

zef::Stat FakeFileSystem::addFile(std::string_view path)
{
    return add(path, fileMode, {});
}

zef::Stat FakeFileSystem::addFolder(std::string_view path)
{
    return add(path, folderMode, {});
}

zef::Stat FakeFileSystem::addLink(std::string_view path, std::string_view target)
{
    return add(path, linkMode, target);
}

void FakeFileSystem::addHardLink(std::string_view existing, std::string_view path)
{
    std::lock_guard lock(_mutex);
    require(existing);
    auto node = folderOf(existing).entries.at(std::string(nameOf(existing)));
    ++node->stat.linkCount;
    touchStatus(*node);
    touch(folderOf(path));
    folderOf(path).entries[std::string(nameOf(path))] = std::move(node);
}

zef::Stat FakeFileSystem::write(std::string_view path)
{
    std::lock_guard lock(_mutex);
    auto& node = require(path);
    touch(node);
    return node.stat;
}

void FakeFileSystem::rename(std::string_view from, std::string_view to)
{
    std::lock_guard lock(_mutex);
    touchStatus(require(from));
    touch(folderOf(from));
    touch(folderOf(to));
    auto moved = folderOf(from).entries.extract(std::string(nameOf(from)));
    moved.key() = nameOf(to);
    auto& entries = folderOf(to).entries;
    entries.erase(moved.key());
    entries.insert(std::move(moved));
}

void FakeFileSystem::remove(std::string_view path)
{
    std::lock_guard lock(_mutex);
    auto& node = require(path);
    --node.stat.linkCount;
    touchStatus(node);
    auto& folder = folderOf(path);
    touch(folder);
    folder.entries.erase(std::string(nameOf(path)));
}

void FakeFileSystem::setStat(std::string_view path, const zef::Stat& stat)
{
    std::lock_guard lock(_mutex);
    require(path).stat = stat;
}

void FakeFileSystem::setHandle(std::string_view path, const zef::FileHandle& handle)
{
    std::lock_guard lock(_mutex);
    require(path).handle = handle;
}

void FakeFileSystem::setNextInode(std::uint64_t inode)
{
    std::lock_guard lock(_mutex);
    _nextInode = inode;
}

void FakeFileSystem::setError(std::string_view path, int error)
{
    std::lock_guard lock(_mutex);
    _errors[std::string(path)] = error;
}

std::size_t FakeFileSystem::statCount() const
{
    std::lock_guard lock(_mutex);
    return _statCount;
}

std::size_t FakeFileSystem::existsCount() const
{
    std::lock_guard lock(_mutex);
    return _existsCount;
}

std::size_t FakeFileSystem::handleCount() const
{
    std::lock_guard lock(_mutex);
    return _handleCount;
}

int FakeFileSystem::statLink(const char* path, zef::Stat& stat)
{
    std::lock_guard lock(_mutex);
    ++_statCount;
    const auto found = findScripted(path, LastLink::isMeant);
    if (found.node)
        stat = found.node->stat;
    return found.error;
}

bool FakeFileSystem::exists(const char* path)
{
    std::lock_guard lock(_mutex);
    ++_existsCount;
    return !findScripted(path, LastLink::isFollowed).error;
}

zef::FileHandle FakeFileSystem::handle(const char* path)
{
    std::lock_guard lock(_mutex);
    ++_handleCount;
    const auto found = findScripted(path, LastLink::isMeant);
    return found.node ? found.node->handle : zef::FileHandle();
}

FakeFileSystem::Found FakeFileSystem::findScripted(std::string_view path, LastLink lastLink) const
{
    const auto scripted = _errors.find(path);
    if (scripted != _errors.end() && scripted->second)
        return { scripted->second, nullptr };
    return find(path, lastLink);
}

FakeFileSystem::Found FakeFileSystem::find(
    std::string_view path, LastLink lastLink, int depth) const
{
    if (path.size() >= PATH_MAX)
        return { ENAMETOOLONG, nullptr };
    if (!path.starts_with('/'))
        return { ENOENT, nullptr };
    if (depth > mostLinks)
        return { ELOOP, nullptr };
    auto names = namesOf(path);
    if (names.empty())
        return { 0, _root };
    // A slash at the end asks for a folder, through a link if need be.
    const bool mustBeFolder = path.ends_with('/');
    auto found = step(*_root, names, 0, mustBeFolder ? LastLink::isFollowed : lastLink, depth);
    if (found.node && mustBeFolder && !found.node->stat.isFolder())
        return { ENOTDIR, nullptr };
    return found;
}

// Goes from `folder` to the entry names[index] and on; a link's target takes the place of the names
// until there.
FakeFileSystem::Found FakeFileSystem::step(const Node& folder,
    const std::vector<std::string>& names, std::size_t index, LastLink lastLink, int depth) const
{
    if (!folder.stat.isFolder())
        return { ENOTDIR, nullptr };
    if (names[index].size() > NAME_MAX)
        return { ENAMETOOLONG, nullptr };
    const auto entry = folder.entries.find(names[index]);
    if (entry == folder.entries.end())
        return { ENOENT, nullptr };
    const auto& node = entry->second;
    const bool isLast = index + 1 == names.size();
    if (node->stat.mode == linkMode && !(isLast && lastLink == LastLink::isMeant)) {
        std::string path = node->target.starts_with('/') ? "" : "/";
        for (std::size_t before = 0; !path.empty() && before < index; ++before)
            path += names[before] + "/";
        path += node->target;
        for (std::size_t behind = index + 1; behind < names.size(); ++behind)
            path += "/" + names[behind];
        return find(path, lastLink, depth + 1);
    }
    return isLast ? Found{ 0, node } : step(*node, names, index + 1, lastLink, depth);
}

FakeFileSystem::Node& FakeFileSystem::require(std::string_view path) const
{
    const auto found = find(path, LastLink::isMeant);
    check(found.error, path);
    return *found.node;
}

FakeFileSystem::Node& FakeFileSystem::folderOf(std::string_view path) const
{
    const auto found = find(parentOf(path), LastLink::isFollowed);
    check(found.error, path);
    return *found.node;
}

zef::Stat FakeFileSystem::add(std::string_view path, std::uint32_t mode, std::string_view target)
{
    std::lock_guard lock(_mutex);
    auto& folder = folderOf(path);
    check(folder.entries.contains(nameOf(path)) ? EEXIST : 0, path);
    touch(folder);
    auto node = makeNode(mode);
    node->target = target;
    const auto stat = node->stat;
    folder.entries.emplace(nameOf(path), std::move(node));
    return stat;
}

std::shared_ptr<FakeFileSystem::Node> FakeFileSystem::makeNode(std::uint32_t mode)
{
    auto node = std::make_shared<Node>();
    node->stat.device = deviceNumber;
    node->stat.mode = mode;
    node->stat.inode = _nextInode++;
    node->stat.linkCount = 1;
    touch(*node);
    node->stat.birthTime = _now;
    node->stat.hasBirthTime = true;
    node->handle.type = 1;
    node->handle.length = sizeof _nextHandle;
    node->handle.isDecodable = true;
    std::memcpy(node->handle.bytes.data(), &_nextHandle, sizeof _nextHandle);
    ++_nextHandle;
    return node;
}

void FakeFileSystem::touch(Node& node)
{
    touchStatus(node);
    node.stat.modificationTime = node.stat.statusChangeTime;
}

void FakeFileSystem::touchStatus(Node& node)
{
    constexpr std::int64_t second = 1'000'000'000;
    _now += nanosecondsAChange;
    node.stat.statusChangeTime = { _now / second, _now % second };
}
