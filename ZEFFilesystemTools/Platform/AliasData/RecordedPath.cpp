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
    const auto stat = _volume.statFolder(path);
    if (!(stat && stat->inode == component.inode) && enterRenamed(component.inode))
        return true;
    if (stat)
        _folder = std::move(path);
    return stat.has_value();
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
        const auto stat = _volume.statFolder(path);
        if (!stat || stat->inode != inode)
            continue;
        _folder = std::move(path);
        return true;
    }
}

// However large the folder is, but not when the time is up.
Ref<const FolderIndex> RecordedPath::index() const
{
    if (_volume.budget().isUsedUp())
        return nullptr;
    const auto stat = _volume.statFolder(_folder);
    return stat ? _volume.index(_folder, *stat, std::numeric_limits<std::size_t>::max()) : nullptr;
}

} // namespace zef
