// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Types/MimeDatabase.h"
#include "ZEFFilesystemTools/Platform/Types/MimeGlobs.h"
#include "ZEFFilesystemTools/Platform/Types/TypeGraph.h"

#include <span>
#include <string_view>
#include <vector>

namespace zef {

/// What a `TypeTable` knows: the built-in types and those of some MIME databases.
///
/// A type `a/b` of a database is `mime:a/b` here, or another name of the built-in type that it
/// stands for; what the built-in table says of its types and extensions holds whatever a database
/// says. Immutable; any thread.
class TypeTableStorage {
public:
    /// Takes in the databases, the most important one first.
    explicit TypeTableStorage(const std::vector<MimeDatabase>& databases);

    /// Whether `type` is `other` or a kind of it. A type that isn't known is a kind of what its
    /// first part says, or of nothing.
    bool conforms(std::string_view type, std::string_view other) const;

    /// The type and everything that it conforms to, the nearest first; of one that isn't known the
    /// type itself and what its first part says. Borrowed, the type itself from the caller.
    std::vector<std::string_view> conformances(std::string_view type) const;

    /// The type for a file's name, or for names with this extension; empty if none is known.
    std::string_view typeOfName(std::string_view name) const;
    std::string_view typeOfExtension(std::string_view extension) const;

private:
    using Type = TypeGraph::Type;

    void addBuiltInTypes();
    void addAliases(const std::vector<MimeDatabase>& databases);
    void addSubclasses(const MimeDatabase& database);
    void addGlobs(const std::vector<MimeDatabase>& databases);
    Type addMimeType(std::string_view name);
    std::vector<Type> nearestFirst(std::span<const Type> found) const;

    TypeGraph _graph;
    MimeGlobs _globs;
    Type _builtInCount = 0;
};

} // namespace zef
