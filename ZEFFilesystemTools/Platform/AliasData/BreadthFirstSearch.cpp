// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/BreadthFirstSearch.h"

namespace zef {

bool BreadthFirstSearch::searchAround(std::string folder)
{
    for (_freeFolder = folder;;) {
        if (searchBelow(folder))
            return true;
        if (_volume.budget().isUsedUp() || folder.size() <= _volume.mountPoint().size())
            return false;
        folder.resize(folder.rfind('/'));
    }
}

bool BreadthFirstSearch::searchBelow(const std::string& folder)
{
    _folders.assign(1, { 0, folder });
    for (std::size_t number = 0; number < _folders.size(); ++number) {
        if (_volume.budget().isUsedUp())
            return false;
        if (searchFolder(pathOf(number), number))
            return true;
    }
    return false;
}

bool BreadthFirstSearch::searchFolder(const std::string& path, std::size_t number)
{
    const auto stat = _volume.statFolder(path);
    if (!stat || !_seen.insert(stat->inode).second)
        return false;
    auto& budget = _volume.budget();
    const auto index = _volume.index(path, *stat, budget.entries);
    if (!index)
        return false;
    if (path != _freeFolder)
        budget.pay(index->count());
    if (_volume.lookIn(path, *index))
        return true;
    for (std::size_t position = 0;; ++position) {
        const auto name = index->folderName(position);
        if (name.empty())
            return false;
        _folders.push_back({ number, std::string(name) });
    }
}

std::string BreadthFirstSearch::pathOf(std::size_t number) const
{
    std::string path;
    for (; number; number = _folders[number].parent)
        path.insert(0, "/" + _folders[number].name);
    return _folders.front().name + path;
}

} // namespace zef
