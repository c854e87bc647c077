// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace tool {

/// Why a request was not done, in the words and numbers of JSON-RPC 2.0.
class RPCError : public std::runtime_error {
public:
    static constexpr int parseError = -32700;
    static constexpr int invalidRequest = -32600;
    static constexpr int unknownMethod = -32601;
    static constexpr int wrongParameters = -32602;
    static constexpr int internalError = -32603;

    RPCError(int code, const std::string& message)
        : std::runtime_error(message)
        , _code(code)
    {
    }

    int code() const { return _code; }

private:
    int _code;
};

} // namespace tool
