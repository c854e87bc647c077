// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Time/ExpiringCache.h"
#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentity.h"

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

namespace zef {

/// Asks volumes who they are, and each one once a second at most. Any thread; no lock is held while
/// a file system works.
class VolumeIdentityCache {
public:
    /// The identity of the volume on this device that is mounted at `mountPoint`, by the mount with
    /// the number `mountID` (0: not known). None if the volume is of an unknown type.
    std::optional<VolumeIdentity> identity(
        const std::string& mountPoint, std::uint32_t device, std::uint64_t mountID);

    /// Only the file system ID, at the cost of one system call; 0 if it is unusable. `path`, links
    /// followed, is on the device.
    std::uint64_t fileSystemID(const char* path, std::uint32_t device);
    /// The same without a system call; none if the device wasn't asked within the last second.
    std::optional<std::uint64_t> knownFileSystemID(std::uint32_t device) const;

    /// Whether objects of the device, which `path` is on, keep their numbers.
    bool hasLastingNumbers(const char* path, std::uint32_t device);

private:
    struct Place {
        std::uint32_t device;
        std::uint64_t mountID;
        std::string mountPoint;

        friend bool operator<(const Place& left, const Place& right)
        {
            return std::tie(left.device, left.mountID, left.mountPoint)
                < std::tie(right.device, right.mountID, right.mountPoint);
        }
    };
    struct Numbers {
        std::uint32_t type = 0;
        std::uint64_t fileSystemID = 0;
    };

    Numbers numbers(const char* path, std::uint32_t device);

    ExpiringCache<Place, VolumeIdentity> _identities{ { .seconds = 1 } };
    /// By device.
    ExpiringCache<std::uint32_t, Numbers> _numbers{ { .seconds = 1 } };
};

} // namespace zef
