// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Types/HashIndex.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zef {

/// Type identifiers and which is a kind of which other.
///
/// It is filled first and completed once; what follows `complete` may be asked by any thread.
class TypeGraph {
public:
    using Type = std::uint16_t;
    static constexpr Type none = UINT16_MAX;
    static constexpr std::size_t longestIdentifier = 255;

    /// The type that `identifier` or another spelling in capitals and small letters names, made
    /// if it is new; `none` for a name that is empty or too long, and if there are too many.
    Type add(std::string_view identifier);

    /// Makes `identifier` another name of `type`. A name that is known already stays what it is.
    void addName(std::string_view identifier, Type type);

    /// Makes each `type` a kind of `parent`; circles do no harm.
    void addParent(Type type, Type parent);

    /// Works out once what every type is a kind of, at most `mostAncestors` of them, the nearest
    /// first: a database can't make this slow or large.
    void complete();

    /// The type with this name, whatever its case; `none` if there is none.
    Type find(std::string_view identifier) const;

    /// The identifier as it was added.
    std::string_view identifier(Type) const;

    std::size_t size() const { return _types.size(); }

    /// Whether `type` is `other` or a kind of it. Only of a completed graph.
    bool conforms(Type type, Type other) const;

    /// The type itself, then what it is a kind of, the nearest first. Only of a completed graph.
    std::span<const Type> conformances(Type type) const;

private:
    static constexpr std::size_t mostAncestors = 64;

    struct Name {
        std::uint32_t offset;
        std::uint16_t length;
        Type type;
    };
    struct Record {
        std::uint32_t name;
        std::uint32_t firstAncestor = 0;
        std::uint32_t ancestorCount = 0;
    };

    bool canAddName(std::string_view identifier) const;
    void appendName(std::string_view identifier, Type type);
    std::string_view text(const Name&) const;
    void appendAncestors(Type type, std::vector<Type>& lastSeenFrom);

    std::string _texts;
    std::vector<Name> _names;
    std::vector<Record> _types;
    HashIndex _index;
    std::vector<std::pair<Type, Type>> _parents; // sorted by the first; empty once completed
    std::vector<Type> _ancestors;
};

} // namespace zef
