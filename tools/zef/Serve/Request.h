// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/JSON/JSONValue.h"

#include <string>
#include <string_view>

namespace tool {

/// One request of a client.
struct Request {
    /// The JSON text to answer with.
    std::string id = "null";
    /// The client needs no answer.
    bool isNotification = false;
    std::string method;
    /// An object.
    JSONValue parameters{ JSONValue::Object() };
    /// Something in it was not valid Unicode, so it is not what the client meant.
    bool hasInvalidCharacters = false;
};

/// Reads `line` into `request`, the id first. Throws `RPCError` if the line is not valid JSON or
/// not a valid request.
void readRequest(std::string_view line, Request& request);

} // namespace tool
