// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Time/ExpiringCache.h"

#include <cstdint>

namespace zef {

/// Who changes the files of a device.
enum class DeviceKind {
    /// This system alone, so that it knows of every change.
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
    /// `unknown` if it is not, or if `path` leads to nothing.
    DeviceKind kind(std::uint32_t device, const char* path);

    /// Forgets everything; to be called when a device was unmounted.
    void forget() { _kinds.forgetAll(); }

private:
    ExpiringCache<std::uint32_t, DeviceKind> _kinds{ { .seconds = 1 } };
};

} // namespace zef
