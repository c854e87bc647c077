// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <atomic>

namespace zef {

/// Gives a platform service its one shared instance, replaceable by another in tests.
///
/// `Service` defines `static Service& system()`, which returns the `immortal` real one.
template <typename Service> class ZEF_EXPORT SharedService {
public:
    /// The instance that the library uses. Any thread.
    static Service& shared()
    {
        auto* replacement = _replacement.load(std::memory_order_acquire);
        return replacement ? *replacement : Service::system();
    }

    /// Puts `replacement` (borrowed; must live until the next call) in the real one's place; null
    /// gives the real one back. Only while no other thread uses the service.
    static void replaceShared(Service* replacement)
    {
        _replacement.store(replacement, std::memory_order_release);
    }

protected:
    SharedService() = default;
    ~SharedService() = default;

private:
    inline static std::atomic<Service*> _replacement{ nullptr };
};

} // namespace zef
