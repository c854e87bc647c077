// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/TypeTableStorage.h"

#include "ZEFFilesystemTools/Platform/Types/AsciiCase.h"
#include "ZEFFilesystemTools/Platform/Types/BuiltInTypes.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>

// A table is made in one pass, in an order that decides who wins. The built-in types come first, so
// that they have the lowest numbers, stand behind their own parents, and keep their extensions
// (`protect`). Aliases come before everything else of the databases, because other lines may use
// any of a type's names. Then come the subclasses, then the types that only globs mention.
// `complete` computes what each type conforms to; only now can the globs be added, because globs
// count only for kinds of data. Of several databases the most important one is read first, and what
// it says stays.
//
// A type of a database is `mime:` and its name, unless that name is one of a built-in type. What a
// type is a kind of by its name alone (`families`) holds for types that no table knows as well.

namespace zef {
namespace {

constexpr unsigned usualWeight = 50;
constexpr std::string_view mimePrefix = "mime:";
constexpr std::string_view inodePrefix = "mime:inode/";

struct Family {
    std::string_view prefix;
    std::string_view parent;
};

// What an identifier says by its first part, the longer parts first. That every text is plain text
// and all else that isn't an inode is data is a rule of the MIME database itself.
constexpr auto families = std::to_array<Family>({
    { inodePrefix, type::item },
    { "mime:text/", "public.plain-text" },
    { "mime:image/", "public.image" },
    { "mime:audio/", "public.audio" },
    { "mime:video/", "public.movie" },
    { mimePrefix, type::data },
    { "dyn.data.", type::data },
    { "dyn.directory.", type::directory },
});

bool beginsWith(std::string_view text, std::string_view prefix)
{
    return equalsFolded(text.substr(0, prefix.size()), prefix);
}

std::string_view parentOfFamily(std::string_view identifier)
{
    for (const auto& family : families) {
        if (beginsWith(identifier, family.prefix))
            return family.parent;
    }
    return {};
}

std::string identifierOf(std::string_view mimeType)
{
    std::string identifier(mimePrefix);
    identifier += mimeType;
    return identifier;
}

struct FoldedLess {
    bool operator()(std::string_view one, std::string_view other) const
    {
        return std::lexicographical_compare(one.begin(), one.end(), other.begin(), other.end(),
            [](char a, char b) { return foldedCase(a) < foldedCase(b); });
    }
};

using Aliases = std::map<std::string_view, std::string_view, FoldedLess>;

// What the alias stands for in the end, or something on the way where there is no end.
std::string_view endOfAliases(const Aliases& aliases, std::string_view name)
{
    constexpr auto mostSteps = 16;
    for (auto step = 0; step < mostSteps; ++step) {
        const auto found = aliases.find(name);
        if (found == aliases.end())
            break;
        name = found->second;
    }
    return name;
}

} // namespace

TypeTableStorage::TypeTableStorage(const std::vector<MimeDatabase>& databases)
{
    addBuiltInTypes();
    addAliases(databases);
    for (const auto& database : databases)
        addSubclasses(database);
    for (const auto& database : databases) {
        for (const auto& glob : database.globs)
            addMimeType(glob.type);
    }
    _graph.complete();
    addGlobs(databases);
    _globs.complete();
}

void TypeTableStorage::addBuiltInTypes()
{
    for (const auto& row : builtInTypes()) {
        const auto type = _graph.add(row.identifier);
        for (auto list = row.parents; !list.empty();)
            _graph.addParent(type, _graph.find(takeListedWord(list)));
        for (auto list = row.mimeTypes; !list.empty();)
            _graph.addName(identifierOf(takeListedWord(list)), type);
        for (auto list = row.extensions; !list.empty();) {
            const auto word = takeListedWord(list);
            const bool heedsCase = word.starts_with('=');
            _globs.add("*." + std::string(word.substr(heedsCase ? 1 : 0)), type, usualWeight,
                heedsCase ? MimeGlobs::Case::heeded : MimeGlobs::Case::folded);
        }
    }
    _globs.protect();
    _builtInCount = static_cast<Type>(_graph.size());
}

void TypeTableStorage::addAliases(const std::vector<MimeDatabase>& databases)
{
    Aliases aliases;
    for (const auto& database : databases) {
        for (const auto& [alias, type] : database.aliases)
            aliases.emplace(alias, type);
    }
    // A newer database may have made an alias of the name by which we know a built-in type.
    for (const auto& [alias, type] : aliases) {
        const auto known = _graph.find(identifierOf(alias));
        _graph.addName(identifierOf(endOfAliases(aliases, type)), known);
    }
    for (const auto& [alias, type] : aliases)
        _graph.addName(identifierOf(alias), addMimeType(endOfAliases(aliases, type)));
}

// The parents of its family come first, because a type has only so many.
TypeTableStorage::Type TypeTableStorage::addMimeType(std::string_view name)
{
    const auto identifier = identifierOf(name);
    const auto known = _graph.find(identifier);
    if (known != TypeGraph::none)
        return known;

    const auto type = _graph.add(identifier);
    _graph.addParent(type, _graph.find(parentOfFamily(identifier)));
    if (!beginsWith(identifier, inodePrefix))
        _graph.addParent(type, _graph.find(type::data));
    _graph.addParent(type, _graph.find(type::item));
    return type;
}

void TypeTableStorage::addSubclasses(const MimeDatabase& database)
{
    for (const auto& [name, parent] : database.subclasses) {
        const auto type = addMimeType(name);
        if (type >= _builtInCount)
            _graph.addParent(type, addMimeType(parent));
    }
}

void TypeTableStorage::addGlobs(const std::vector<MimeDatabase>& databases)
{
    const auto data = _graph.find(type::data);
    std::vector<bool> isClosed(_graph.size());
    for (const auto& database : databases) {
        for (const auto& glob : database.globs) {
            const auto type = _graph.find(identifierOf(glob.type));
            if (type == TypeGraph::none || isClosed[type] || !_graph.conforms(type, data)
                || beginsWith(_graph.identifier(type), inodePrefix))
                continue;
            _globs.add(glob.glob, type, glob.weight,
                glob.heedsCase ? MimeGlobs::Case::heeded : MimeGlobs::Case::folded);
        }
        for (const auto& name : database.typesWithoutOtherGlobs) {
            const auto type = _graph.find(identifierOf(name));
            if (type != TypeGraph::none)
                isClosed[type] = true;
        }
    }
}

bool TypeTableStorage::conforms(std::string_view type, std::string_view other) const
{
    if (equalsFolded(type, other))
        return true;
    const auto otherType = _graph.find(other);
    if (otherType == TypeGraph::none)
        return false;
    auto known = _graph.find(type);
    if (known == TypeGraph::none)
        known = _graph.find(parentOfFamily(type));
    return known != TypeGraph::none && _graph.conforms(known, otherType);
}

// A database's types come first, because no built-in type is a kind of them; a built-in type stands
// behind its parents in the table.
std::vector<TypeTableStorage::Type> TypeTableStorage::nearestFirst(
    std::span<const Type> found) const
{
    std::vector<Type> types(found.begin(), found.end());
    const auto firstBuiltIn = std::stable_partition(
        types.begin(), types.end(), [this](Type type) { return type >= _builtInCount; });
    std::sort(firstBuiltIn, types.end(), std::greater<>());
    return types;
}

std::vector<std::string_view> TypeTableStorage::conformances(std::string_view type) const
{
    std::vector<std::string_view> identifiers;
    auto known = _graph.find(type);
    if (known == TypeGraph::none) {
        identifiers.push_back(type);
        known = _graph.find(parentOfFamily(type));
    }
    if (known == TypeGraph::none)
        return identifiers;
    for (const auto one : nearestFirst(_graph.conformances(known)))
        identifiers.push_back(_graph.identifier(one));
    return identifiers;
}

std::string_view TypeTableStorage::typeOfName(std::string_view name) const
{
    const auto type = _globs.typeOfName(name);
    return type == TypeGraph::none ? std::string_view() : _graph.identifier(type);
}

std::string_view TypeTableStorage::typeOfExtension(std::string_view extension) const
{
    const auto type = _globs.typeOfExtension(extension);
    return type == TypeGraph::none ? std::string_view() : _graph.identifier(type);
}

} // namespace zef
