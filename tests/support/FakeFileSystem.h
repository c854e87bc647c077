// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

/// Files that exist in memory alone and of which a test decides everything, down to the inode
/// number; stands in for the shared file system while it lives.
///
/// Paths are absolute, without "." and "..". Numbers, time stamps, birth times and handles are made
/// up in an orderly way: inode numbers count up and are never used again by themselves; each object
/// has a birth time and a handle of its own; each change has a later time stamp. Whatever can't be
/// done throws std::system_error. Any thread.
class FakeFileSystem final : public zef::FileSystem {
public:
    /// The device that every object is on until the test says otherwise.
    static constexpr std::uint32_t deviceNumber = 0x4a0001;

    FakeFileSystem();
    ~FakeFileSystem() override;
    FakeFileSystem(const FakeFileSystem&) = delete;
    FakeFileSystem& operator=(const FakeFileSystem&) = delete;

    /// Makes an object; its folder must exist. Returns what `statLink` says of it.
    zef::Stat addFile(std::string_view path);
    zef::Stat addFolder(std::string_view path);
    zef::Stat addLink(std::string_view path, std::string_view target);
    /// Gives an object a second name.
    void addHardLink(std::string_view existing, std::string_view path);

    /// Changes the time stamps as a write does.
    zef::Stat write(std::string_view path);
    /// Moves an object with all that is below it, in place of whatever is at `to`.
    void rename(std::string_view from, std::string_view to);
    /// Removes the object with all that is below it.
    void remove(std::string_view path);

    /// What is told of the object from now on.
    void setStat(std::string_view path, const zef::Stat&);
    void setHandle(std::string_view path, const zef::FileHandle&);
    /// The number of the next object that is made: how a number comes back.
    void setNextInode(std::uint64_t);
    /// Questions about this very path fail with `error`, an errno value; 0 ends it.
    void setError(std::string_view path, int error);

    /// How often each question was asked.
    std::size_t statCount() const;
    std::size_t existsCount() const;
    std::size_t handleCount() const;

    int statLink(const char* path, zef::Stat& stat) override;
    bool exists(const char* path) override;
    zef::FileHandle handle(const char* path) override;

private:
    struct Node;
    using Entries = std::map<std::string, std::shared_ptr<Node>, std::less<>>;
    enum class LastLink { isMeant, isFollowed };

    struct Found {
        int error = 0;
        std::shared_ptr<Node> node;
    };

    Found find(std::string_view path, LastLink, int depth = 0) const;
    Found findScripted(std::string_view path, LastLink) const;
    Found step(const Node& folder, const std::vector<std::string>& names, std::size_t index,
        LastLink, int depth) const;
    Node& require(std::string_view path) const;
    Node& folderOf(std::string_view path) const;
    zef::Stat add(std::string_view path, std::uint32_t mode, std::string_view target);
    std::shared_ptr<Node> makeNode(std::uint32_t mode);
    void touch(Node&);
    void touchStatus(Node&);

    mutable std::mutex _mutex;
    std::int64_t _now = 1'600'000'000'000'000'000;
    std::uint64_t _nextInode = 2;
    std::uint64_t _nextHandle = 1;
    std::shared_ptr<Node> _root;
    std::map<std::string, int, std::less<>> _errors;
    std::size_t _statCount = 0;
    std::size_t _existsCount = 0;
    std::size_t _handleCount = 0;
};
