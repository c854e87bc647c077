// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/JSON/JSON.h"
#include "tools/zef/Serve/Parameters.h"
#include "tools/zef/Serve/Request.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tool {

/// The methods that clients may call.
class MethodTable {
public:
    using Handler = std::function<JSON(const Parameters&)>;

    /// A method with all the names of its parameters. Its handler returns the result, or throws
    /// `RPCError`.
    void add(const std::string& name, std::vector<std::string> parameters, Handler);

    /// Does what the request asks for. Throws `RPCError`.
    JSON call(const Request&) const;

private:
    struct Method {
        std::vector<std::string> parameters;
        Handler handler;
    };

    std::map<std::string, Method> _methods;
};

} // namespace tool
