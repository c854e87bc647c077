// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/GlobPattern.h"

#include "ZEFFilesystemTools/Platform/Types/AsciiCase.h"

#include <cstddef>

namespace zef {
namespace {

constexpr std::string_view wildcards = "*?[";

bool isBetween(char character, char low, char high)
{
    const auto byte = static_cast<unsigned char>(character);
    return static_cast<unsigned char>(low) <= byte && byte <= static_cast<unsigned char>(high);
}

// The index behind the set that begins at `begin`; 0 if nothing ends it. A ']' that comes first
// is one of the set.
std::size_t endOfSet(std::string_view glob, std::size_t begin)
{
    auto first = begin + 1;
    if (first < glob.size() && (glob[first] == '!' || glob[first] == '^'))
        ++first;
    const auto end = glob.find(']', first + 1);
    return end == glob.npos ? 0 : end + 1;
}

bool isInSet(char character, std::string_view members)
{
    for (std::size_t index = 0; index < members.size(); ++index) {
        const bool isRange = index + 2 < members.size() && members[index + 1] == '-';
        if (isBetween(character, members[index], members[isRange ? index + 2 : index]))
            return true;
        index += isRange ? 2 : 0;
    }
    return false;
}

bool matchesSet(char character, std::string_view set, bool foldsCase)
{
    auto members = set.substr(1, set.size() - 2);
    const bool isNegated = members.front() == '!' || members.front() == '^';
    members.remove_prefix(isNegated ? 1 : 0);
    const bool isMember = isInSet(character, members)
        || (foldsCase && isInSet(foldedCase(character), members));
    return isMember != isNegated;
}

// Whether `character` matches what `glob` holds at `index`, which then moves behind that.
bool matchesOne(char character, std::string_view glob, std::size_t& index, bool foldsCase)
{
    const auto wanted = glob[index];
    const auto end = wanted == '[' ? endOfSet(glob, index) : 0;
    if (end) {
        const auto set = glob.substr(index, end - index);
        index = end;
        return matchesSet(character, set, foldsCase);
    }
    ++index;
    return wanted == '?' || wanted == character
        || (foldsCase && foldedCase(wanted) == foldedCase(character));
}

} // namespace

GlobKind kindOfGlob(std::string_view glob)
{
    if (glob.find_first_of(wildcards) == glob.npos)
        return GlobKind::literal;
    const bool isEnding = glob.size() > 2 && glob.starts_with("*.")
        && glob.find_first_of(wildcards, 1) == glob.npos;
    return isEnding ? GlobKind::ending : GlobKind::general;
}

// Only the last '*' is ever tried again: what an earlier one could take, it can take as well.
bool matchesGlob(std::string_view name, std::string_view glob, bool foldsCase)
{
    std::size_t atName = 0;
    std::size_t atGlob = 0;
    auto retryGlob = glob.npos;
    std::size_t retryName = 0;
    while (atName < name.size()) {
        if (atGlob < glob.size() && glob[atGlob] == '*') {
            retryGlob = ++atGlob;
            retryName = atName;
            continue;
        }
        if (atGlob < glob.size() && matchesOne(name[atName], glob, atGlob, foldsCase)) {
            ++atName;
            continue;
        }
        if (retryGlob == glob.npos)
            return false;
        atGlob = retryGlob;
        atName = ++retryName;
    }
    return glob.find_first_not_of('*', atGlob) == glob.npos;
}

} // namespace zef
