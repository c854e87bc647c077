// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FSRef.h"
#include "ZEFFilesystemTools/Platform/Objects/SharedService.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include <cstddef>
#include <string_view>

namespace zef {

/// On which volumes the locator may hold descriptors, which keep a volume from being unmounted.
enum class DescriptorPolicy {
    never,
    /// Not below /media, /run/media and /mnt, nor on file systems of removable media.
    fixedVolumes,
    always,
};

/// Finds the objects that references refer to, wherever they have been moved.
///
/// It holds O_PATH descriptors within a budget, uses handles if the process may open them, and
/// otherwise looks at the last known path, its folder and other folders that it knows. Every answer
/// is verified by a fresh look at the disk. Any thread.
class ZEF_EXPORT Locator : public SharedService<Locator> {
public:
    virtual ~Locator() = default;

    static Locator& system();

    /// Makes the reference to the object at `url`, which `stat` describes. False, with `ref`
    /// unchanged, if there can be none. Keeps nothing.
    [[nodiscard]] virtual bool makeRef(const FileURL& url, const Stat& stat, FSRef& ref) = 0;

    /// Takes what will find the object again after it was moved: completes `ref` with its handle
    /// and its folder's number, and holds a descriptor while the budget lasts. `url` is where it
    /// was last seen. Balance each call with one `release`.
    virtual void retain(FSRef& ref, const FileURL& url) = 0;

    /// Gives up what one `retain` of this object took.
    virtual void release(const FSRef& ref) = 0;

    /// Where the object is now; null if it is gone or can't be found. `lastKnown` is where it was
    /// last seen (may be null); its spelling of a path below symbolic links is kept. A folder's URL
    /// ends in a slash, no other does.
    virtual FileURL locate(const FSRef& ref, const FileURL& lastKnown) = 0;

    /// Closes every descriptor held on the volume that `path` is on, so that it can be unmounted,
    /// and holds none there for the next minute (`setDescriptorPolicy` ends that).
    virtual void releaseVolume(std::string_view path) = 0;

    /// Closes one held descriptor to make room for another use; false if none is held.
    virtual bool giveBackOneDescriptor() = 0;

    /// How many descriptors may be held; 0 holds none. Default: a quarter of the process's soft
    /// limit, at least 64 and at most 4096.
    virtual void setDescriptorBudget(std::size_t) = 0;
    virtual std::size_t descriptorBudget() const = 0;
    /// How many are held now.
    virtual std::size_t heldDescriptorCount() const = 0;
    /// `fixedVolumes` at first. Closes what may not be held any more, and ends what `releaseVolume`
    /// asked for.
    virtual void setDescriptorPolicy(DescriptorPolicy) = 0;
};

} // namespace zef
