// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/Request.h"

#include "tools/zef/JSONText.h"
#include "tools/zef/Serve/NumberText.h"
#include "tools/zef/Serve/RPCError.h"

#include <stdexcept>

namespace tool {
namespace {

using nlohmann::json;

json parsed(const JSONText& text)
{
    try {
        return text.parsed();
    } catch (const std::invalid_argument& error) {
        throw RPCError(RPCError::parseError, error.what());
    }
}

std::string textOfId(const json& id, const JSONText& text)
{
    if (!id.is_string() && !id.is_number() && !id.is_null())
        throw RPCError(RPCError::invalidRequest, "the id is no text, number or null");
    const bool mayBeChanged = text.hasInvalidCharacters() && id.is_string();
    if (mayBeChanged && id.get_ref<const std::string&>().find("\ufffd") != std::string::npos)
        throw RPCError(RPCError::invalidRequest, "the id is no valid Unicode");
    return id.is_number_float() ? textOfIdentifier(text.text()) : id.dump();
}

void checkVersion(const json& object)
{
    const auto version = object.find("jsonrpc");
    if (version == object.end() || *version != "2.0")
        throw RPCError(RPCError::invalidRequest, "jsonrpc is not the text 2.0");
}

} // namespace

void readRequest(std::string_view line, Request& request)
{
    const JSONText text(line);
    auto object = parsed(text);
    if (object.is_array())
        throw RPCError(RPCError::invalidRequest, "batches are not supported");
    if (!object.is_object())
        throw RPCError(RPCError::invalidRequest, "a request is an object");

    const auto id = object.find("id");
    if (id != object.end())
        request.id = textOfId(*id, text);
    checkVersion(object);
    const auto method = object.find("method");
    if (method == object.end() || !method->is_string())
        throw RPCError(RPCError::invalidRequest, "the method is missing or no text");
    request.method = method->get<std::string>();
    request.isNotification = id == object.end();
    request.hasInvalidCharacters = text.hasInvalidCharacters();

    const auto parameters = object.find("params");
    if (parameters != object.end() && !parameters->is_null())
        request.parameters = std::move(*parameters);
}

} // namespace tool
