// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/MimeGlobs.h"

#include "ZEFFilesystemTools/Platform/Types/AsciiCase.h"
#include "ZEFFilesystemTools/Platform/Types/GlobPattern.h"

#include <algorithm>

// A glob is one of three kinds. Whole names and endings ("*.txt"), nearly all of a database, are
// kept in hash indexes; one pass from the end of a name to its front hashes all its endings. Globs
// with wildcards elsewhere are few and are tried one by one, the best first; each knows the bytes
// that a matching name begins and ends with, which rules out most of them.
//
// The texts of all globs stand in one string: a record is 12 bytes, and nothing is allocated to
// find a type. Of two globs with the same key the better one stays (`Rank`), or the first one if it
// is protected.

namespace zef {
namespace {

constexpr std::string_view wildcards = "*?[]";

// What every matching name must have in this place; 0 if that may be anything.
char requiredByte(char character)
{
    return wildcards.find(character) == wildcards.npos ? foldedCase(character) : '\0';
}

bool hasByte(char character, char required)
{
    return required == '\0' || foldedCase(character) == required;
}

} // namespace

std::string_view MimeGlobs::text(const Glob& glob) const
{
    return std::string_view(_texts).substr(glob.offset, glob.rank.length);
}

bool MimeGlobs::isKey(const Glob& glob, std::string_view key) const
{
    auto own = text(glob);
    own.remove_prefix(own.front() == '*' ? 1 : 0);
    return glob.rank.caseOf == Case::heeded ? own == key : equalsFolded(own, key);
}

bool MimeGlobs::matches(const Glob& glob, std::string_view name) const
{
    return hasByte(name.front(), glob.firstByte) && hasByte(name.back(), glob.lastByte)
        && matchesGlob(name, text(glob), glob.rank.caseOf == Case::folded);
}

void MimeGlobs::add(std::string_view glob, Type type, unsigned weight, Case caseOf)
{
    if (type == TypeGraph::none || glob.empty() || glob.size() > longestGlob
        || _texts.size() > UINT32_MAX - longestGlob)
        return;

    const Rank rank{ static_cast<std::uint8_t>(std::min(weight, 255U)),
        static_cast<std::uint8_t>(glob.size()), caseOf };
    const Glob record{ static_cast<std::uint32_t>(_texts.size()), type, rank,
        requiredByte(glob.front()), requiredByte(glob.back()) };
    _texts += glob;
    const auto kind = kindOfGlob(glob);
    if (kind == GlobKind::general) {
        if (_general.size() < mostGeneralGlobs)
            _general.push_back(record);
    } else if (kind == GlobKind::literal)
        addKey(_literals, foldedHash(glob), glob, record);
    else {
        addKey(_endings, endingHash(glob.substr(1)), glob.substr(1), record);
        _longestEnding = std::max(_longestEnding, glob.size() - 1);
    }
}

void MimeGlobs::addKey(HashIndex& index, std::uint32_t hash, std::string_view key, const Glob& glob)
{
    if (replaces(index, hash, key, glob))
        return;
    index.insert(hash, static_cast<std::uint32_t>(_globs.size()));
    _globs.push_back(glob);
}

// Whether there is such a glob already, which then is the better of the two.
bool MimeGlobs::replaces(
    const HashIndex& index, std::uint32_t hash, std::string_view key, const Glob& glob)
{
    return index.find(hash, [&](std::uint32_t number) {
        auto& known = _globs[number];
        if (known.rank.caseOf != glob.rank.caseOf || !isKey(known, key))
            return false;
        if (number >= _protectedCount && known.rank < glob.rank)
            known = glob;
        return true;
    });
}

void MimeGlobs::complete()
{
    std::stable_sort(_general.begin(), _general.end(),
        [](const auto& one, const auto& other) { return other.rank < one.rank; });
    _texts.shrink_to_fit();
    _globs.shrink_to_fit();
    _general.shrink_to_fit();
}

// The best glob for `key` in `index`, or `other` where that is as good.
const MimeGlobs::Glob* MimeGlobs::best(
    const HashIndex& index, std::uint32_t hash, std::string_view key, const Glob* other) const
{
    index.find(hash, [&](std::uint32_t number) {
        const auto& glob = _globs[number];
        if (isKey(glob, key) && (!other || other->rank < glob.rank))
            other = &glob;
        return false;
    });
    return other;
}

const MimeGlobs::Glob* MimeGlobs::bestEnding(std::string_view name) const
{
    const Glob* found = nullptr;
    auto hash = emptyEndingHash;
    const auto first = name.size() - std::min(name.size() - 1, _longestEnding);
    for (auto index = name.size(); index-- > first;) {
        hash = endingHash(name[index], hash);
        if (name[index] == '.')
            found = best(_endings, hash, name.substr(index), found);
    }
    return found;
}

MimeGlobs::Type MimeGlobs::typeOfName(std::string_view name) const
{
    if (name.empty())
        return TypeGraph::none;
    if (const auto* literal = best(_literals, foldedHash(name), name, nullptr))
        return literal->type;

    const auto* ending = bestEnding(name);
    for (const auto& glob : _general) {
        if (ending && !(ending->rank < glob.rank))
            break;
        if (matches(glob, name))
            return glob.type;
    }
    return ending ? ending->type : TypeGraph::none;
}

MimeGlobs::Type MimeGlobs::typeOfExtension(std::string_view extension) const
{
    const auto hash = endingHash('.', endingHash(extension));
    const Glob* found = nullptr;
    _endings.find(hash, [&](std::uint32_t number) {
        const auto& glob = _globs[number];
        const auto ending = text(glob).substr(2);
        const bool isIt = glob.rank.caseOf == Case::heeded ? ending == extension
                                                           : equalsFolded(ending, extension);
        if (isIt && (!found || found->rank < glob.rank))
            found = &glob;
        return false;
    });
    return found ? found->type : TypeGraph::none;
}

} // namespace zef
