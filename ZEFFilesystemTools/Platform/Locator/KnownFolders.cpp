// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/KnownFolders.h"

namespace zef {

void KnownFolders::enter(const FSRef& ref, const FileURL& url)
{
    auto& place = _index.try_emplace(ObjectNumbers::of(ref), _folders.end()).first->second;
    if (place == _folders.end())
        place = _folders.emplace(_folders.begin());
    else
        _folders.splice(_folders.begin(), _folders, place);
    place->folder = { ref, url };
    ++place->uses;
}

bool KnownFolders::leave(const FSRef& ref)
{
    const auto found = _index.find(ObjectNumbers::of(ref));
    if (found == _index.end() || --found->second->uses > 0)
        return false;
    _folders.erase(found->second);
    _index.erase(found);
    return true;
}

void KnownFolders::learn(const FSRef& ref, const FileURL& url)
{
    const auto found = _index.find(ObjectNumbers::of(ref));
    if (found == _index.end() || found->second->folder.url == url)
        return;
    found->second->folder.url = url;
    _folders.splice(_folders.begin(), _folders, found->second);
}

const KnownFolder* KnownFolders::find(const ObjectNumbers& numbers) const
{
    const auto found = _index.find(numbers);
    return found == _index.end() ? nullptr : &found->second->folder;
}

std::vector<KnownFolder> KnownFolders::recentOnDevice(std::uint32_t device, std::size_t limit) const
{
    std::vector<KnownFolder> folders;
    for (const auto& entry : _folders) {
        if (folders.size() == limit)
            break;
        if (entry.folder.ref.device() == device && entry.folder.url)
            folders.push_back(entry.folder);
    }
    return folders;
}

} // namespace zef
