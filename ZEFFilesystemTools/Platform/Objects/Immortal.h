// SPDX-License-Identifier: MIT
#pragma once

namespace zef {

/// The one object of this type in the process, made at the first call. Never destroyed, because
/// threads that outlive `main` may still use it. Any thread.
template <typename Object> Object& immortal()
{
    static auto& object = *new Object;
    return object;
}

} // namespace zef
