// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Serve/LoadReporter.h"
#include "tools/zef/Serve/Subscribers.h"

#include <cstdint>
#include <map>
#include <unordered_map>

namespace tool {

/// What the server keeps for its client.
struct Session {
    /// The items that the client holds, by their numbers.
    std::unordered_map<std::uint64_t, zef::Ref<ZEFFileItem>> items;
    std::uint64_t lastLoad = 0;
    std::map<std::uint64_t, zef::Ref<LoadReporter>> loads;
    Subscribers subscribers;
    /// The client has asked for the end.
    bool isShutDown = false;
};

} // namespace tool
