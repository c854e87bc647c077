// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Types/HashIndex.h"
#include "ZEFFilesystemTools/Platform/Types/TypeGraph.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace zef {

/// Which type belongs to which file names.
///
/// A glob that is a whole name comes first, then the one of the highest weight, then the longest,
/// then the one that heeds case, then an ending, and then the one that was added first. It is
/// filled first and completed once; what follows `complete` may be asked by any thread.
class MimeGlobs {
public:
    using Type = TypeGraph::Type;
    static constexpr std::size_t longestGlob = 255;
    static constexpr std::size_t mostGeneralGlobs = 1000;

    enum class Case : std::uint8_t { folded, heeded };

    /// Gives the names that match `glob` to `type`. A glob that is empty or too long is left
    /// out, and so is one with wildcards after `mostGeneralGlobs` of them, each of which every name
    /// is tried with.
    void add(std::string_view glob, Type type, unsigned weight, Case);

    /// What is added from now on takes no name from the whole names and endings added so far.
    void protect() { _protectedCount = _globs.size(); }

    void complete();

    /// The type for a file name; `TypeGraph::none` if no glob matches. The '.' that a name begins
    /// with begins no ending.
    Type typeOfName(std::string_view name) const;

    /// The type of names that end in a '.' and `extension`.
    Type typeOfExtension(std::string_view extension) const;

private:
    struct Rank {
        std::uint8_t weight;
        std::uint8_t length;
        Case caseOf;

        friend bool operator<(const Rank& left, const Rank& right)
        {
            return std::tie(left.weight, left.length, left.caseOf)
                < std::tie(right.weight, right.length, right.caseOf);
        }
    };
    struct Glob {
        std::uint32_t offset;
        Type type;
        Rank rank;
        char firstByte; // folded; 0 if it begins, or ends, with a wildcard
        char lastByte;
    };

    std::string_view text(const Glob&) const;
    bool isKey(const Glob& glob, std::string_view key) const;
    bool matches(const Glob& glob, std::string_view name) const;

    void addKey(HashIndex& index, std::uint32_t hash, std::string_view key, const Glob&);
    bool replaces(const HashIndex& index, std::uint32_t hash, std::string_view key, const Glob&);

    const Glob* best(
        const HashIndex& index, std::uint32_t hash, std::string_view key, const Glob* other) const;
    const Glob* bestEnding(std::string_view name) const;

    std::string _texts;
    std::vector<Glob> _globs; // whole names and endings, no two alike
    std::size_t _protectedCount = 0;
    HashIndex _literals;
    HashIndex _endings; // by what follows the '*'
    std::vector<Glob> _general; // the best first once completed
    std::size_t _longestEnding = 0;
};

} // namespace zef
