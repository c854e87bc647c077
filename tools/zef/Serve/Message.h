// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/JSON/JSON.h"
#include "tools/zef/Serve/RPCError.h"

#include <string>

namespace tool {

/// Each writes one line to standard output. Any thread. `id` is JSON text.
void sendResult(const std::string& id, const JSON& result);
void sendError(const std::string& id, const RPCError&);
void sendNotification(const char* method, const JSON& parameters);

} // namespace tool
