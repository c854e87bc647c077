// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/MimeDatabase.h"

#include "ZEFFilesystemTools/Platform/Disk/BoundedFile.h"
#include "ZEFFilesystemTools/Platform/Paths/DataHome.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"
#include "ZEFFilesystemTools/Platform/Types/MimeGlobs.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <set>
#include <utility>

namespace zef {
namespace {

// The largest file of a usual system's database has 40 KiB; a hundred times that bounds the memory
// and, to a second or two, the time that a broken or hostile one can take.
constexpr std::size_t largestFile = std::size_t{ 4 } << 20U;
constexpr unsigned greatestWeight = 100;
constexpr std::size_t longestType = 200;
constexpr std::string_view noGlobs = "__NOGLOBS__";

// Takes what stands before the next `separator` off `text`, and the separator.
std::string_view take(std::string_view& text, char separator)
{
    const auto end = std::min(text.find(separator), text.size());
    const auto part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

// Calls `parse` for every line that says something and counts those that it refuses.
template <typename Parser> std::size_t parseLines(std::string_view text, const Parser& parse)
{
    std::size_t refused = 0;
    while (!text.empty()) {
        auto line = take(text, '\n');
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (!line.empty() && line.front() != '#' && !parse(line))
            ++refused;
    }
    return refused;
}

bool isGraphic(char character)
{
    return character > ' ' && character < 0x7f;
}

// "text/plain": two parts of graphic characters.
bool isType(std::string_view text)
{
    const auto slash = text.find('/');
    return slash != text.npos && slash > 0 && slash + 1 < text.size()
        && text.find('/', slash + 1) == text.npos && text.size() <= longestType
        && std::all_of(text.begin(), text.end(), isGraphic);
}

std::optional<unsigned> parseWeight(std::string_view text)
{
    unsigned weight = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, weight);
    const bool isWeight = result.ec == std::errc() && result.ptr == end && weight <= greatestWeight;
    return isWeight ? std::optional(weight) : std::nullopt;
}

std::optional<MimeDatabase::Glob> parseGlob(std::string_view line)
{
    const auto weight = parseWeight(take(line, ':'));
    if (!weight)
        return std::nullopt;
    MimeDatabase::Glob glob;
    glob.weight = *weight;
    glob.type = take(line, ':');
    glob.glob = take(line, ':');
    auto flags = take(line, ':');
    while (!flags.empty())
        glob.heedsCase |= take(flags, ',') == "cs";
    const bool isGlob = isType(glob.type) && !glob.glob.empty()
        && glob.glob.size() <= MimeGlobs::longestGlob && glob.glob.find('\0') == std::string::npos;
    return isGlob ? std::optional(std::move(glob)) : std::nullopt;
}

std::size_t parsePairs(std::string_view text, std::vector<MimeDatabase::Pair>& pairs)
{
    return parseLines(text, [&](std::string_view line) {
        const auto first = take(line, ' ');
        if (!isType(first) || !isType(line))
            return false;
        pairs.emplace_back(first, line);
        return true;
    });
}

// A glob that heeds case is listed a second time without the flag, for readers that don't know it.
void dropRepeatedGlobs(std::vector<MimeDatabase::Glob>& globs)
{
    std::set<std::pair<std::string_view, std::string_view>> heedingCase;
    for (const auto& glob : globs) {
        if (glob.heedsCase)
            heedingCase.emplace(glob.type, glob.glob);
    }
    std::vector<bool> isRepeated(globs.size());
    for (std::size_t index = 0; index < globs.size(); ++index) {
        const auto& glob = globs[index];
        isRepeated[index] = !glob.heedsCase && heedingCase.contains({ glob.type, glob.glob });
    }
    std::size_t index = 0;
    std::erase_if(globs, [&](const auto&) { return isRepeated[index++]; });
}

// A program that runs as somebody else may have the home of a user who lets nobody in.
bool isMissing(FileError error)
{
    return error == FileError::notFound || error == FileError::notAFolder
        || error == FileError::accessDenied;
}

void addFolder(std::vector<std::string>& folders, std::string_view dataFolder)
{
    while (dataFolder.ends_with('/'))
        dataFolder.remove_suffix(1);
    auto folder = std::string(dataFolder) + "/mime";
    if (std::find(folders.begin(), folders.end(), folder) == folders.end())
        folders.push_back(std::move(folder));
}

} // namespace

void MimeDatabase::parseGlobs(std::string_view text)
{
    brokenLines += parseLines(text, [&](std::string_view line) {
        auto glob = parseGlob(line);
        if (!glob)
            return false;
        if (glob->glob == noGlobs)
            typesWithoutOtherGlobs.push_back(std::move(glob->type));
        else
            globs.push_back(std::move(*glob));
        return true;
    });
    dropRepeatedGlobs(globs);
}

void MimeDatabase::parseSubclasses(std::string_view text)
{
    brokenLines += parsePairs(text, subclasses);
}

void MimeDatabase::parseAliases(std::string_view text)
{
    brokenLines += parsePairs(text, aliases);
}

std::vector<std::string> MimeDatabase::folders()
{
    std::vector<std::string> folders;
    if (const auto ownData = dataHome())
        addFolder(folders, *ownData);
    const auto* value = std::getenv("XDG_DATA_DIRS");
    std::string_view list = value && *value ? value : "/usr/local/share:/usr/share";
    while (!list.empty()) {
        const auto folder = take(list, ':');
        if (folder.starts_with('/'))
            addFolder(folders, folder);
    }
    return folders;
}

MimeDatabase MimeDatabase::inFolder(const std::string& folder)
{
    std::string unusable;
    const auto read = [&](const char* name) {
        const auto path = folder + '/' + name;
        auto file = readBoundedFile(path.c_str(), largestFile, FinalLink::followed);
        if (file)
            return std::move(file->bytes);
        if (!isMissing(file.error()))
            (unusable += unusable.empty() ? "" : ", ") += name;
        return std::string();
    };
    MimeDatabase database;
    database.parseGlobs(read("globs2"));
    database.parseSubclasses(read("subclasses"));
    database.parseAliases(read("aliases"));
    if (!unusable.empty() || database.brokenLines)
        log("MIME database in %s: %zu lines left out, files that can't be used: %s", folder.c_str(),
            database.brokenLines, unusable.empty() ? "none" : unusable.c_str());
    return database;
}

} // namespace zef
