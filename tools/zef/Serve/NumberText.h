// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tool {

/// The number that is the member `id` of the object in `json`, as it is written there: a parsed
/// number may have lost digits. Empty when there is no such number with a fraction, an exponent or
/// more digits than 64 bits hold.
std::string textOfIdentifier(const std::string& json);

} // namespace tool
