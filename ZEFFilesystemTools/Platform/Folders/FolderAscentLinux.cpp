// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Folders/FolderAscent.h"

#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>

namespace zef {

int FolderAscent::climb(const Ref<ObjectDescriptor>& folder)
{
    Place start;
    if (const int error = placeOf(*folder, start))
        return error;
    _folders.assign(1, start.numbers);
    _top = folder;
    _startsAtTop = true;
    _isInNestedVolume = false;
    bool isOnMount = true;
    auto place = start;
    for (auto current = folder;;) {
        const int descriptor = DescriptorReserve::shared().openAt(
            current->descriptor(), "..", O_PATH | O_DIRECTORY);
        if (descriptor < 0)
            return errno;
        current = makeRef<ObjectDescriptor>(descriptor);
        Place parent;
        if (const int error = placeOf(*current, parent))
            return error;
        if (parent == place)
            return 0; // the root is its own parent
        isOnMount = isOnMount && areOnOneMount(start, parent);
        if (isOnMount) {
            _top = current;
            _startsAtTop = false;
            _isInNestedVolume |= parent.numbers.device != start.numbers.device;
        }
        _folders.push_back(parent.numbers);
        place = parent;
    }
}

bool FolderAscent::contains(const ObjectNumbers& folder) const
{
    return std::find(_folders.begin(), _folders.end(), folder) != _folders.end();
}

int FolderAscent::placeOf(const ObjectDescriptor& folder, Place& place)
{
    Stat stat;
    const int error = folder.stat(stat, place.mountID);
    place.numbers = ObjectNumbers::of(stat);
    return error;
}

// An old system doesn't number its mounts.
bool FolderAscent::areOnOneMount(const Place& one, const Place& other)
{
    return one.mountID == other.mountID
        && (one.mountID || one.numbers.device == other.numbers.device);
}

} // namespace zef
