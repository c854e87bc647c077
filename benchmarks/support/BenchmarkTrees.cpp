// SPDX-License-Identifier: MIT
#include "benchmarks/support/BenchmarkTrees.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t defaultEntryCount = 500000;
constexpr std::size_t entriesPerFolder = 250;
constexpr std::size_t foldersPerFolder = 20;

std::string makeRoot()
{
    auto root = (fs::canonical(fs::temp_directory_path()) / "zef-trees.XXXXXX").string();
    if (!::mkdtemp(root.data()))
        throw fs::filesystem_error(
            "mkdtemp", root, std::error_code(errno, std::generic_category()));
    return root;
}

void makeFiles(const std::string& folder, std::size_t count)
{
    for (std::size_t number = 0; number < count; ++number) {
        auto path = folder;
        path += "/document-";
        path += std::to_string(10000000 + number).substr(1);
        path += ".txt";
        std::ofstream(path).exceptions(std::ios::failbit);
    }
}

// The folders are numbered breadth first, so that the last level takes what the others leave.
void makeTree(const std::string& path, std::size_t count)
{
    fs::create_directory(path);
    const auto folderCount = std::max<std::size_t>(1, count / entriesPerFolder);
    std::vector<std::string> folders;
    std::size_t filesLeft = count - folderCount;
    for (std::size_t number = 0; number < folderCount; ++number) {
        const auto parent = number < foldersPerFolder ? path
                                                      : folders[number / foldersPerFolder - 1];
        folders.push_back(parent + "/folder-" + std::to_string(100000 + number).substr(1));
        fs::create_directory(folders.back());
        const auto files = filesLeft / (folderCount - number);
        makeFiles(folders.back(), files);
        filesLeft -= files;
    }
}

} // namespace

BenchmarkTrees& BenchmarkTrees::shared()
{
    static BenchmarkTrees trees;
    return trees;
}

BenchmarkTrees::BenchmarkTrees()
    : _root(makeRoot())
{
}

BenchmarkTrees::~BenchmarkTrees()
{
    std::error_code ignored;
    fs::remove_all(_root, ignored);
}

std::size_t BenchmarkTrees::entryCount()
{
    const char* count = std::getenv("ZEF_BENCHMARK_ENTRIES");
    return count ? std::strtoull(count, nullptr, 10) : defaultEntryCount;
}

const std::string& BenchmarkTrees::wide()
{
    if (_wide.empty())
        makeTree(_wide = _root + "/wide", entryCount());
    return _wide;
}

const std::string& BenchmarkTrees::large()
{
    if (_large.empty())
        makeTree(_large = _root + "/large", largeCount());
    return _large;
}

const std::string& BenchmarkTrees::narrow()
{
    if (!_narrow.empty())
        return _narrow;
    _narrow = _root + "/narrow";
    fs::create_directory(_narrow);
    for (std::size_t chain = 0; chain < chainCount; ++chain) {
        auto path = _narrow + "/chain-" + std::to_string(chain);
        for (std::size_t link = 0; link < chainLength; ++link) {
            fs::create_directory(path);
            makeFiles(path, filesPerLink);
            path += "/folder-" + std::to_string(link);
        }
    }
    return _narrow;
}
