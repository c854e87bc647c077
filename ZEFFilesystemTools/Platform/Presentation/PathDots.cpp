// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/PathDots.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Disk/ObjectNumbers.h"
#include "ZEFFilesystemTools/Platform/Paths/PathBytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
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

// What the path would be if there were no links. Sets `climbed` to how much of it, and `behind` to
// where the rest of `path` begins, after the last "..".
std::string folded(std::string_view path, std::size_t& climbed, std::size_t& behind)
{
    std::string result;
    climbed = behind = 0;
    for (auto rest = path; !rest.empty();) {
        const auto component = takeComponent(rest);
        if (component == "..") {
            result.resize(result.empty() ? 0 : result.rfind('/'));
            climbed = result.size();
            behind = path.size() - rest.size();
        } else if (!component.empty() && component != ".") {
            result.append("/").append(component);
        }
    }
    return result;
}

// With a slash at the end, so that a link is followed.
bool findFolder(std::string_view path, ObjectNumbers& numbers)
{
    PathBytes bytes;
    Stat stat;
    if (!bytes.append(path) || !bytes.append("/")
        || FileSystem::shared().statLink(bytes.text(), stat) != 0)
        return false;
    numbers = ObjectNumbers::of(stat);
    return true;
}

bool areSameFolder(std::string_view one, std::string_view other)
{
    ObjectNumbers numbers;
    ObjectNumbers otherNumbers;
    return findFolder(one, numbers) && findFolder(other, otherNumbers) && numbers == otherNumbers;
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
    std::size_t climbed = 0;
    std::size_t behind = 0;
    auto result = folded(path, climbed, behind);
    if (behind && !areSameFolder(path.substr(0, behind), result.substr(0, climbed))) {
        const auto real = withoutLinks(path.substr(0, behind));
        if (real.empty())
            return path;
        result.replace(0, climbed, real);
    }
    return result.empty() ? "/" : result;
}

} // namespace zef
