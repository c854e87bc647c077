// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/AliasData/RecordedPath.h"

#include <limits>

namespace zef {

bool RecordedPath::follow()
{
    const auto& chain = _volume.record().chain;
    if (chain.empty())
        return _volume.lookAt(_folder);
    for (std::size_t position = 0; position + 1 < chain.size(); ++position) {
        if (!enter(chain[position]))
            return false;
    }
    if (_volume.lookAt(pathOfEntry(_folder, chain.back().name)))
        return true;
    const auto names = index();
    return names && _volume.lookIn(_folder, *names);
}

bool RecordedPath::enter(const AliasRecord::Component& component)
{
    auto path = pathOfEntry(_folder, component.name);
    Stat stat;
    const bool isThere = _volume.statFolder(path, stat);
    if (!(isThere && stat.inode == component.inode) && enterRenamed(component.inode))
        return true;
    if (isThere)
        _folder = std::move(path);
    return isThere;
}

bool RecordedPath::enterRenamed(std::uint64_t inode)
{
    const auto names = index();
    if (!names)
        return false;
    for (std::size_t position = 0;; ++position) {
        const auto name = names->name(inode, position);
        if (name.empty())
            return false;
        auto path = pathOfEntry(_folder, name);
        Stat stat;
        if (!_volume.statFolder(path, stat) || stat.inode != inode)
            continue;
        _folder = std::move(path);
        return true;
    }
}

// However large the folder is, but not when the time is up.
Ref<const FolderIndex> RecordedPath::index() const
{
    Stat stat;
    if (_volume.budget().isUsedUp() || !_volume.statFolder(_folder, stat))
        return nullptr;
    return _volume.index(_folder, stat, std::numeric_limits<std::size_t>::max());
}

} // namespace zef
