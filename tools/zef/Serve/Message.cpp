// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/Message.h"

#include "tools/zef/Output.h"

namespace tool {
namespace {

// The id goes through as text, since a number may have more digits than a parsed one keeps.
void sendAnswer(const std::string& id, const char* kind, const JSON& value)
{
    Output::standardOutput().write(
        R"({"jsonrpc":"2.0","id":)" + id + ",\"" + kind + "\":" + value.text() + "}\n");
}

// What is wrong may be a name of any length.
std::string shortened(std::string text)
{
    constexpr std::size_t longest = 500;
    if (text.size() > longest)
        text.replace(longest, std::string::npos, "...");
    return text;
}

} // namespace

void sendResult(const std::string& id, const JSON& result)
{
    sendAnswer(id, "result", result);
}

void sendError(const std::string& id, const RPCError& error)
{
    sendAnswer(id, "error",
        JSONObject().add("code", error.code()).add("message", shortened(error.what())));
}

void sendNotification(const char* method, const JSON& parameters)
{
    Output::standardOutput().write(std::string(R"({"jsonrpc":"2.0","method":")") + method
        + R"(","params":)" + parameters.text() + "}\n");
}

} // namespace tool
