// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zef {

/// What one folder of the shared MIME database says about names and kinds of types, line by line.
struct MimeDatabase {
    /// `weight:type:glob[:flags]`.
    struct Glob {
        unsigned weight = 0;
        std::string type;
        std::string glob;
        bool heedsCase = false;

        bool operator==(const Glob&) const = default;
    };
    /// Two types of one line: the type and what it is a kind of, or the alias and the type.
    using Pair = std::pair<std::string, std::string>;

    std::vector<Glob> globs;
    /// The types whose globs in less important folders don't count.
    std::vector<std::string> typesWithoutOtherGlobs;
    std::vector<Pair> subclasses;
    std::vector<Pair> aliases;
    /// How many lines could not be understood and were left out.
    std::size_t brokenLines = 0;

    /// Each adds what a file of that name holds. Never fail, whatever the text.
    void parseGlobs(std::string_view text);
    void parseSubclasses(std::string_view text);
    void parseAliases(std::string_view text);

    /// The folders in which this process's environment and user have MIME databases, the most
    /// important one first: `mime` in the user's data folder, then in each of XDG_DATA_DIRS or
    /// /usr/local/share and /usr/share. Only absolute ones, none twice, whether they exist or not.
    static std::vector<std::string> folders();

    /// Reads the database in `folder`, without waiting for anything; an empty one if there is none.
    /// Writes one line to the log if something in it can't be used.
    static MimeDatabase inFolder(const std::string& folder);
};

} // namespace zef
