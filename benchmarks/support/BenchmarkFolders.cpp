// SPDX-License-Identifier: MIT
#include "benchmarks/support/BenchmarkFolders.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace {

constexpr std::size_t pathLength = 60;

std::string makeRoot()
{
    auto root = (std::filesystem::canonical(std::filesystem::temp_directory_path()) / "zef.XXXXXX")
                    .string();
    if (!::mkdtemp(root.data()))
        throw std::filesystem::filesystem_error(
            "mkdtemp", root, std::error_code(errno, std::generic_category()));
    return root;
}

std::string sevenDigits(std::size_t number)
{
    const auto digits = std::to_string(number);
    return std::string(7 - std::min<std::size_t>(7, digits.size()), '0') + digits;
}

void makeFiles(const std::string& folder, std::size_t count)
{
    for (std::size_t number = 0; number < count; ++number)
        std::ofstream(folder + "/" + "document-" + sevenDigits(number) + ".txt")
            .exceptions(std::ios::failbit);
}

void makeFolders(const std::string& folder, std::size_t count)
{
    for (std::size_t number = 0; number < count; ++number)
        std::filesystem::create_directory(folder + "/" + "subfolder-of-" + sevenDigits(number));
}

} // namespace

BenchmarkFolders& BenchmarkFolders::shared()
{
    static BenchmarkFolders folders;
    return folders;
}

BenchmarkFolders::BenchmarkFolders()
    : _root(makeRoot())
{
}

BenchmarkFolders::~BenchmarkFolders()
{
    std::error_code ignored;
    std::filesystem::remove_all(_root, ignored);
}

const std::string& BenchmarkFolders::withFiles(std::size_t count)
{
    return folder(Kind::files, count);
}

const std::string& BenchmarkFolders::withFolders(std::size_t count)
{
    return folder(Kind::folders, count);
}

const std::vector<std::string>& BenchmarkFolders::trees(std::size_t count)
{
    auto& trees = _trees[count];
    if (trees.empty()) {
        trees = entryPaths(folder(Kind::trees, count));
        for (const auto& tree : trees) {
            makeFolders(tree, subfolderCount);
            makeFiles(tree, subfolderCount);
        }
    }
    return trees;
}

const std::string& BenchmarkFolders::folder(Kind kind, std::size_t count)
{
    auto& path = _folders[{ kind, count }];
    if (!path.empty())
        return path;
    constexpr const char* purposes[] = { "-files", "-folders", "-trees" };
    path = _root + "/" + std::to_string(count) + purposes[static_cast<int>(kind)];
    path.resize(std::max(path.size(), pathLength), '-');
    std::filesystem::create_directory(path);
    if (kind == Kind::files)
        makeFiles(path, count);
    else
        makeFolders(path, count);
    return path;
}

std::vector<std::string> entryPaths(const std::string& path)
{
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(path))
        paths.push_back(entry.path().string());
    return paths;
}
