// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace tool {

/// One request of a client.
struct Request {
    /// The JSON text to answer with.
    std::string id = "null";
    /// The client wants no answer.
    bool isNotification = false;
    std::string method;
    /// An object.
    nlohmann::json parameters = nlohmann::json::object();
    /// Something in it was no valid Unicode, so it is not what the client meant.
    bool hasInvalidCharacters = false;
};

/// Reads `line` into `request`, the id first. Throws `RPCError` when it is no JSON or no request.
void readRequest(std::string_view line, Request& request);

} // namespace tool
