// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/// The trees that are walked: made when they are first asked for, and removed when the program
/// ends. They lie below the folder for temporary files. Errors throw
/// std::filesystem::filesystem_error.
class BenchmarkTrees {
public:
    static BenchmarkTrees& shared();

    BenchmarkTrees(const BenchmarkTrees&) = delete;
    BenchmarkTrees& operator=(const BenchmarkTrees&) = delete;

    /// How many entries the wide tree has: 500,000, or what the environment variable
    /// ZEF_BENCHMARK_ENTRIES says, for a short run.
    static std::size_t entryCount();

    /// The path of a tree with `entryCount` entries, one in 250 of them a folder, 20 folders
    /// in each that has any.
    const std::string& wide();

    /// The path of a tree like it with twice as many.
    const std::string& large();
    static std::size_t largeCount() { return 2 * entryCount(); }

    /// The path of a tree of 100 chains of 100 folders with 4 files each.
    const std::string& narrow();

    static constexpr std::size_t chainCount = 100;
    static constexpr std::size_t chainLength = 100;
    static constexpr std::size_t filesPerLink = 4;
    /// Everything in the narrow tree.
    static constexpr std::size_t narrowCount = chainCount * chainLength * (filesPerLink + 1);

private:
    BenchmarkTrees();
    ~BenchmarkTrees();

    std::string _root;
    std::string _wide;
    std::string _large;
    std::string _narrow;
};
