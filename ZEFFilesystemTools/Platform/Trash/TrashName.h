// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zef {

/// The names that a file may get in the trash, where others of the same name may be: "a.txt",
/// "a.2.txt", "a.3.txt". Immutable.
class TrashName {
public:
    /// What the name of a file's record has behind the file's own.
    static constexpr std::string_view infoSuffix = ".trashinfo";

    /// `original` (borrowed) is the file's name outside the trash.
    explicit TrashName(std::string_view original);

    /// The candidate with this number, from 1. Its beginning is cut, between two characters, where
    /// the name of the record would be longer than names can be.
    std::string numbered(unsigned number) const;

private:
    std::string_view _stem;
    /// With its dot; may be empty.
    std::string_view _extension;
};

} // namespace zef
