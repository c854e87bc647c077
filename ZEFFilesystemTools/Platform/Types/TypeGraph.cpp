// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/TypeGraph.h"

#include "ZEFFilesystemTools/Platform/Types/AsciiCase.h"

#include <algorithm>

namespace zef {

std::string_view TypeGraph::text(const Name& name) const
{
    return std::string_view(_texts).substr(name.offset, name.length);
}

std::string_view TypeGraph::identifier(Type type) const
{
    return text(_names[_types[type].name]);
}

TypeGraph::Type TypeGraph::find(std::string_view identifier) const
{
    auto type = none;
    _index.find(foldedHash(identifier), [&](std::uint32_t index) {
        if (!equalsFolded(text(_names[index]), identifier))
            return false;
        type = _names[index].type;
        return true;
    });
    return type;
}

bool TypeGraph::canAddName(std::string_view identifier) const
{
    return !identifier.empty() && identifier.size() <= longestIdentifier
        && _texts.size() <= UINT32_MAX - longestIdentifier;
}

void TypeGraph::appendName(std::string_view identifier, Type type)
{
    _index.insert(foldedHash(identifier), static_cast<std::uint32_t>(_names.size()));
    _names.push_back({ static_cast<std::uint32_t>(_texts.size()),
        static_cast<std::uint16_t>(identifier.size()), type });
    _texts += identifier;
}

TypeGraph::Type TypeGraph::add(std::string_view identifier)
{
    const auto known = find(identifier);
    if (known != none || !canAddName(identifier) || _types.size() == none)
        return known;

    const auto type = static_cast<Type>(_types.size());
    _types.push_back({ .name = static_cast<std::uint32_t>(_names.size()) });
    appendName(identifier, type);
    return type;
}

void TypeGraph::addName(std::string_view identifier, Type type)
{
    if (type != none && canAddName(identifier) && find(identifier) == none)
        appendName(identifier, type);
}

void TypeGraph::addParent(Type type, Type parent)
{
    if (type != none && parent != none && type != parent)
        _parents.emplace_back(type, parent);
}

void TypeGraph::complete()
{
    // The order in which parents were added says which are left out where there are too many.
    std::stable_sort(_parents.begin(), _parents.end(),
        [](const auto& one, const auto& other) { return one.first < other.first; });
    std::vector<Type> lastSeenFrom(_types.size(), none);
    for (std::size_t type = 0; type < _types.size(); ++type)
        appendAncestors(static_cast<Type>(type), lastSeenFrom);

    _parents = {};
    _ancestors.shrink_to_fit();
    _names.shrink_to_fit();
    _types.shrink_to_fit();
    _texts.shrink_to_fit();
}

// Breadth first, with the type itself at the head: the list is the queue.
void TypeGraph::appendAncestors(Type type, std::vector<Type>& lastSeenFrom)
{
    const auto begin = _ancestors.size();
    _ancestors.push_back(type);
    lastSeenFrom[type] = type;
    for (auto at = begin; at < _ancestors.size(); ++at) {
        const auto child = _ancestors[at];
        auto edge = std::lower_bound(_parents.begin(), _parents.end(), child,
            [](const auto& pair, Type wanted) { return pair.first < wanted; });
        for (; edge != _parents.end() && edge->first == child; ++edge) {
            if (_ancestors.size() - begin == mostAncestors)
                break;
            if (lastSeenFrom[edge->second] == type)
                continue;
            lastSeenFrom[edge->second] = type;
            _ancestors.push_back(edge->second);
        }
    }
    _types[type].firstAncestor = static_cast<std::uint32_t>(begin);
    _types[type].ancestorCount = static_cast<std::uint32_t>(_ancestors.size() - begin);
}

bool TypeGraph::conforms(Type type, Type other) const
{
    const auto all = conformances(type);
    return std::find(all.begin(), all.end(), other) != all.end();
}

std::span<const TypeGraph::Type> TypeGraph::conformances(Type type) const
{
    return std::span(_ancestors).subspan(_types[type].firstAncestor, _types[type].ancestorCount);
}

} // namespace zef
