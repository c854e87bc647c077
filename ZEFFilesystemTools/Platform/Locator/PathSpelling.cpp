// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/PathSpelling.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include <algorithm>

namespace zef {
namespace {

std::vector<FileURL> foldersAbove(FileURL url)
{
    std::vector<FileURL> folders;
    while (url) {
        auto folder = url.deletingLastPathComponent();
        if (folder == url)
            break;
        url = folder;
        folders.push_back(std::move(folder));
    }
    return folders;
}

// With a slash at the end, so that a link to a folder is followed.
bool statFolder(const FileURL& folder, Stat& stat)
{
    PathBytes path;
    return folder.fileSystemRepresentation(path) && path.append("/")
        && FileSystem::shared().statLink(path.text(), stat) == 0;
}

// `folder` with the names of `below` appended, of which the first is the deepest.
FileURL joined(FileURL folder, const std::vector<FileURL>& below)
{
    std::for_each(below.rbegin(), below.rend(), [&](const FileURL& url) {
        folder = folder.appendingPathComponent(
            url.name(), url.hasDirectoryPath() ? URLKind::folder : URLKind::file);
    });
    return folder;
}

} // namespace

PathSpelling::PathSpelling(const FileURL& lastKnown, FolderLookUp lookUp)
    : _lastKnown(lastKnown)
    , _lookUp(std::move(lookUp))
{
}

FileURL PathSpelling::spell(const FileURL& found)
{
    if (_lastKnown && found.isDirectlyIn(_lastKnown.deletingLastPathComponent()))
        return found;
    lookAtFolders();
    std::vector<FileURL> below{ found };
    for (const auto& folder : foldersAbove(found)) {
        if (auto spelling = spellFolder(folder))
            return joined(std::move(spelling), below);
        below.push_back(folder);
    }
    return found;
}

FileURL PathSpelling::spellFolder(const FileURL& folder)
{
    Stat stat;
    if (!statFolder(folder, stat))
        return nullptr;
    const auto numbers = ObjectNumbers::of(stat);
    const auto same = std::find_if(_folders.begin(), _folders.end(),
        [&](const auto& candidate) { return candidate.numbers == numbers; });
    return same != _folders.end() ? same->url : _lookUp(stat);
}

void PathSpelling::lookAtFolders()
{
    for (auto& folder : foldersAbove(_lastKnown)) {
        Stat stat;
        if (statFolder(folder, stat))
            _folders.push_back({ std::move(folder), ObjectNumbers::of(stat) });
    }
}

} // namespace zef
