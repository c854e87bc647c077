// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Ref.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>

namespace zef {

/// The path of a folder, ending in '/', kept once for all the URLs of the files in it.
///
/// Two folder paths with the same bytes are the same object while either is in use, so comparing
/// them is comparing pointers. Immutable; any thread.
class ZEF_EXPORT FolderPath {
public:
    /// The one folder path with these bytes, which must end in '/'.
    static Ref<const FolderPath> of(std::string_view bytes);

    std::string_view bytes() const { return _bytes; }

    void retain() const noexcept { _retainCount.fetch_add(1, std::memory_order_relaxed); }
    void release() const noexcept;

private:
    struct Table;

    FolderPath(std::string_view bytes, std::size_t hash)
        : _bytes(bytes)
        , _hash(hash)
    {
    }

    bool retainIfAlive() const noexcept;

    mutable std::atomic<std::uint32_t> _retainCount{ 1 };
    std::string _bytes;
    std::size_t _hash;
};

} // namespace zef
