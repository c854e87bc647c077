// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/Request.h"

#include "tools/zef/JSON/JSON.h"
#include "tools/zef/JSON/JSONText.h"
#include "tools/zef/Serve/RPCError.h"
#include "tools/zef/Text.h"

#include <stdexcept>

namespace tool {
namespace {

[[noreturn]] void refuse(const char* reason)
{
    throw RPCError(RPCError::invalidRequest, reason);
}

JSONValue parsed(const JSONText& text)
{
    try {
        return text.parsed();
    } catch (const std::invalid_argument& error) {
        throw RPCError(RPCError::parseError, error.what());
    }
}

std::string textOfId(const JSONValue& id, bool mayBeChanged)
{
    if (const auto* text = id.as<std::string>()) {
        if (mayBeChanged && text->find(replacementCharacter) != std::string::npos)
            refuse("the id is not valid Unicode");
        return JSON(*text).text();
    }
    if (const auto* fraction = id.as<JSONValue::Fraction>())
        return fraction->text;
    if (const auto* number = id.as<std::uint64_t>())
        return JSON(*number).text();
    if (const auto* number = id.as<std::int64_t>())
        return JSON(*number).text();
    if (!id.isNull())
        refuse("the id is neither text nor a number nor null");
    return JSON().text();
}

} // namespace

void readRequest(std::string_view line, Request& request)
{
    const JSONText text(line);
    auto object = parsed(text);
    if (object.as<JSONValue::List>())
        refuse("batches are not supported");
    if (!object.as<JSONValue::Object>())
        refuse("a request is an object");

    const auto* id = object.member("id");
    if (id)
        request.id = textOfId(*id, text.hasInvalidCharacters());
    const auto* version = object.member("jsonrpc");
    const auto* versionText = version ? version->as<std::string>() : nullptr;
    if (!versionText || *versionText != "2.0")
        refuse("jsonrpc is not the text 2.0");
    const auto* method = object.member("method");
    const auto* methodName = method ? method->as<std::string>() : nullptr;
    if (!methodName)
        refuse("the method is missing or no text");
    request.method = *methodName;
    request.isNotification = !id;
    request.hasInvalidCharacters = text.hasInvalidCharacters();

    auto* parameters = object.member("params");
    if (parameters && !parameters->isNull())
        request.parameters = std::move(*parameters);
}

} // namespace tool
