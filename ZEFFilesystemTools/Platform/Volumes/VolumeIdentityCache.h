// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Volumes/VolumeIdentity.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace zef {

/// Asks volumes for their evidence, and each one once a second at most. Any thread; no lock is held
/// while a file system works.
class VolumeIdentityCache {
public:
    /// What the volume that `path` is on has to tell, with the mount's number `mountID` (0: not
    /// known), which is mounted at `mountPoint`. NO when the volume is of an unknown type.
    bool evidence(const std::string& mountPoint, std::uint32_t device, std::uint64_t mountID,
        VolumeIdentity& evidence);

    /// The least of it, at one system call: the file system's own number, 0 when it is of no use.
    /// `path`, links followed, is on the device.
    std::uint64_t fileSystemID(const char* path, std::uint32_t device);
    /// The same without a system call; NO when the device wasn't asked within the last second.
    bool findFileSystemID(std::uint32_t device, std::uint64_t& number);

    /// Whether objects of the device, which `path` is on, keep their numbers.
    bool hasLastingNumbers(const char* path, std::uint32_t device);

private:
    struct Numbers {
        std::uint32_t device = 0;
        std::uint32_t type = 0;
        std::uint64_t fileSystemID = 0;
        double validUntil = 0;
    };
    struct Known {
        std::uint32_t device;
        std::uint64_t mountID;
        VolumeIdentity evidence;
        double validUntil;
    };

    Numbers numbers(const char* path, std::uint32_t device);
    bool findNumbers(std::uint32_t device, Numbers& numbers);
    bool find(const std::string& mountPoint, std::uint32_t device, std::uint64_t mountID,
        VolumeIdentity& evidence);

    std::mutex _mutex;
    std::vector<Numbers> _numbers;
    std::vector<Known> _known;
};

} // namespace zef
