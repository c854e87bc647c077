// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/PathDots.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"
#include "ZEFFilesystemTools/Platform/Paths/PathBytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace zef {
namespace {

std::string_view takeComponent(std::string_view& path)
{
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    const auto component = path.substr(0, path.find('/'));
    path.remove_prefix(component.size());
    return component;
}

bool hasDots(std::string_view path)
{
    return path.find("/.") != std::string_view::npos;
}

// What a path would be if there were no links.
struct FoldedPath {
    std::string text;
    /// After the last "..": how much of `text` there was, and where the rest of the path begins.
    std::size_t climbed = 0;
    std::size_t behind = 0;
};

FoldedPath folded(std::string_view path)
{
    FoldedPath result;
    for (auto rest = path; !rest.empty();) {
        const auto component = takeComponent(rest);
        if (component == "..") {
            result.text.resize(result.text.empty() ? 0 : result.text.rfind('/'));
            result.climbed = result.text.size();
            result.behind = path.size() - rest.size();
        } else if (!component.empty() && component != ".") {
            result.text.append("/").append(component);
        }
    }
    return result;
}

// With a slash at the end, so that a link is followed.
std::optional<ObjectNumbers> findFolder(std::string_view path)
{
    PathBytes bytes;
    Stat stat;
    if (!bytes.append(path) || !bytes.append("/")
        || FileSystem::shared().statLink(bytes.text(), stat) != 0)
        return std::nullopt;
    return ObjectNumbers::of(stat);
}

bool areSameFolder(std::string_view one, std::string_view other)
{
    const auto numbers = findFolder(one);
    return numbers && numbers == findFolder(other);
}

std::string withoutLinks(const std::string& path)
{
    char* found = ::realpath(path.c_str(), nullptr); // allocates as much as it needs
    std::string result(found ? found : "");
    std::free(found);
    return result;
}

} // namespace

std::string pathWithoutDots(std::string path)
{
    if (!hasDots(path))
        return path;
    auto [result, climbed, behind] = folded(path);
    if (behind && !areSameFolder(path.substr(0, behind), result.substr(0, climbed))) {
        const auto real = withoutLinks(path.substr(0, behind));
        if (real.empty())
            return path;
        result.replace(0, climbed, real);
    }
    return result.empty() ? "/" : result;
}

} // namespace zef
