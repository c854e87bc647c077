// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/MethodTable.h"

#include "tools/zef/Serve/RPCError.h"

namespace tool {

void MethodTable::add(const std::string& name, std::vector<std::string> parameters, Handler handler)
{
    _methods[name] = { std::move(parameters), std::move(handler) };
}

JSON MethodTable::call(const Request& request) const
{
    const auto found = _methods.find(request.method);
    if (found == _methods.end())
        throw RPCError(RPCError::unknownMethod, "there is no method \"" + request.method + '"');
    // A name that lost a byte must not be taken for another file's.
    if (request.hasInvalidCharacters)
        throw RPCError(RPCError::wrongParameters, "the parameters are not valid Unicode");
    return found->second.handler(Parameters(request.parameters, found->second.parameters));
}

} // namespace tool
