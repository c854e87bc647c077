// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// The folders that the benchmarks work on: made when they are first asked for, shared by all
/// benchmarks, and removed when the program ends.
///
/// They lie below the folder for temporary files (TMPDIR, or /tmp). Their paths have 60 bytes and
/// the names in them 20, so that figures of several machines can be compared. Errors throw
/// std::filesystem::filesystem_error.
class BenchmarkFolders {
public:
    static BenchmarkFolders& shared();

    BenchmarkFolders(const BenchmarkFolders&) = delete;
    BenchmarkFolders& operator=(const BenchmarkFolders&) = delete;

    /// The path of a folder that holds `count` empty files and nothing else.
    const std::string& withFiles(std::size_t count);

    /// The path of a folder that holds `count` empty folders and nothing else.
    const std::string& withFolders(std::size_t count);

    /// The paths of `count` folders, each with `subfolderCount` folders and as many files in it.
    const std::vector<std::string>& trees(std::size_t count);

    static constexpr std::size_t subfolderCount = 10;

private:
    enum class Kind { files, folders, trees };

    BenchmarkFolders();
    ~BenchmarkFolders();

    const std::string& folder(Kind, std::size_t count);

    std::string _root;
    std::map<std::pair<Kind, std::size_t>, std::string> _folders;
    std::map<std::size_t, std::vector<std::string>> _trees;
};

/// The paths of everything in the folder at `path`, in the file system's order.
std::vector<std::string> entryPaths(const std::string& path);
