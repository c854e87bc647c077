// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <mutex>
#include <unordered_map>

namespace zef {

/// Who changes the files of a device.
enum class DeviceKind {
    /// This system alone, so that it can tell of every change.
    local,
    /// The system makes the files up when they are read; nobody writes them (proc, sysfs).
    madeUp,
    /// Perhaps another host or program (network file systems, FUSE).
    remote,
    unknown,
};

/// Knows the kinds of devices, by the types of their file systems (statfs(2)).
///
/// Each device is looked at at most once a second, because the system gives the number of an
/// unmounted device to another one. Any thread; no lock is held while the file system works.
class DeviceKindCache {
public:
    /// The kind of the device with this number, which the object at `path` is said to be on.
    /// `unknown` when that is not so or when `path` leads to nothing.
    DeviceKind kind(std::uint32_t device, const char* path);

    /// Forgets everything; for when a device was unmounted.
    void forget();

private:
    struct Known {
        DeviceKind kind;
        double validUntil;
    };

    std::mutex _mutex;
    std::unordered_map<std::uint32_t, Known> _known;
};

} // namespace zef
