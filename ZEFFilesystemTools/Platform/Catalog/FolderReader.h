// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zef {

/// Reads the raw entries of one open folder (getdents64(2)), without "." and "..". One thread.
class FolderReader {
public:
    struct Entry {
        /// Ends in a NUL; lives until the next call of `next`.
        const char* name;
        std::size_t nameLength;
        /// As the folder has it: only a hint, see readdir(3).
        std::uint64_t inode;
    };

    FolderReader() = default;
    ~FolderReader();
    FolderReader(const FolderReader&) = delete;
    FolderReader& operator=(const FolderReader&) = delete;

    /// Opens the folder that `ref` refers to, last seen at `url`. 0, or an errno value; EINVAL for
    /// an empty reference. Permission to read is not needed yet.
    [[nodiscard]] int open(const FSRef& ref, const FileURL& url);

    /// The same for the entry `name` of a folder that is open, without looking up the whole path,
    /// and with one system call if it may be read. A parent that is suspended is resumed;
    /// EBADF if that can't be done.
    [[nodiscard]] int openIn(
        FolderReader& parent, const char* name, const FSRef& ref, const FileURL& url);

    /// Reads what is left into memory and returns how many entries that are.
    std::size_t countRest();

    /// Reads what is left into memory and closes the descriptor.
    void suspend();

    /// Opens the descriptor again if it was closed; false, with an `error`, if that can't be done.
    /// If only descriptors were missing it may be tried again.
    [[nodiscard]] bool resume();

    /// Takes over the descriptor of a folder in this one, to get back from there, wherever both
    /// were moved meanwhile, when this one is resumed; nothing where this one has a descriptor
    /// already.
    void resumeFrom(FolderReader& child);

    /// Whether nothing is left, as far as that is known without a read.
    bool isExhausted() const { return _isAtEnd && _offset == _length; }

    /// Reads the next entry, without a descriptor too; false at the end and on an error.
    [[nodiscard]] bool next(Entry&);

    /// Why `next` returned false: 0 at the end, or an errno value.
    int error() const { return _error; }

    /// The descriptor of the folder, for a look at its entries.
    int folder() const { return _folder; }

private:
    int openAbove();
    int openAtPath(const FSRef& ref, const FileURL& url);
    int openAt(int parent, const char* name, int mode, const FSRef& ref, const char* path);
    bool openForReading();
    bool fillBuffer();
    void readRest();

    FSRef _ref;
    FileURL _url;
    int _folder = -1;
    /// While suspended: a folder so many levels below this one, or none.
    int _folderBelow = -1;
    std::size_t _levelsAbove = 0;
    bool _isReadable = false;
    /// Behind the buffer there is nothing.
    bool _isAtEnd = false;
    int _error = 0;
    std::unique_ptr<std::byte[]> _buffer;
    std::size_t _capacity = 0;
    std::size_t _length = 0;
    std::size_t _offset = 0;
};

} // namespace zef
