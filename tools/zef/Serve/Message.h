// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/FileJSON.h"
#include "tools/zef/Serve/RPCError.h"

#include <string>

namespace tool {

/// Each writes one line to standard output. Any thread. `id` is JSON text.
void sendResult(const std::string& id, const JSON& result);
void sendError(const std::string& id, const RPCError&);
void sendNotification(const char* method, const JSON& parameters);

/// The same for parameters that are JSON text already.
void sendNotificationText(const char* method, const std::string& parameters);

} // namespace tool
