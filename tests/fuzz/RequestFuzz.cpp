// SPDX-License-Identifier: MIT
#include "tools/zef/JSON/ArchiveJSON.h"
#include "tools/zef/JSON/JSONText.h"
#include "tools/zef/LineInput.h"
#include "tools/zef/Serve/MethodTable.h"
#include "tools/zef/Serve/RPCError.h"
#include "tools/zef/Text.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using nlohmann::json;
using tool::Parameters;
using tool::RPCError;

constexpr std::size_t longestLine = 1000;
const std::vector<std::string> names{ "text", "number", "integer", "seconds", "boolean", "url",
    "id", "ids", "archive" };

void require(bool condition)
{
    if (!condition)
        std::abort();
}

std::vector<tool::LineInput::Line> linesOf(std::string_view bytes, std::size_t pieceSize)
{
    tool::LineInput reader(longestLine);
    std::vector<tool::LineInput::Line> lines;
    const auto takeLines = [&] {
        while (auto line = reader.takeLine())
            lines.push_back(*line);
    };
    while (!bytes.empty()) {
        const auto piece = bytes.substr(0, pieceSize);
        reader.append(piece);
        takeLines();
        bytes.remove_prefix(piece.size());
    }
    reader.finish();
    takeLines();
    return lines;
}

// The lines don't depend on the pieces that they arrive in.
void checkLines(const std::vector<tool::LineInput::Line>& lines, std::string_view bytes)
{
    const auto again = linesOf(bytes, bytes.size() + 1);
    require(lines.size() == again.size());
    for (std::size_t index = 0; index < lines.size(); ++index) {
        require(lines[index].text == again[index].text);
        require(lines[index].isTooLong == again[index].isTooLong);
        require(lines[index].text.size() <= longestLine);
    }
}

// An error is a code of JSON-RPC with words, and can be written as one line.
void checkError(const RPCError& error)
{
    require(error.code() <= RPCError::invalidRequest || error.code() == RPCError::parseError);
    require(*error.what());
    const auto text = tool::JSONObject().add("message", error.what()).line();
    require(json::accept(text) && text.find('\n') == text.size() - 1);
}

template <typename Read> void tryTo(Read&& read)
{
    try {
        read();
    } catch (const RPCError& error) {
        require(error.code() == RPCError::wrongParameters);
        checkError(error);
    }
}

void checkArchive(const zef::Ref<ZEFArchiveDictionary>& archive)
{
    const auto text = tool::jsonOfArchive(*archive).text();
    require(json::accept(text));
    const auto again = tool::archiveOfJSON(tool::JSONText(text).parsed());
    require(tool::jsonOfArchive(*again).text() == text);
}

tool::JSON readEverything(const Parameters& parameters)
{
    tryTo([&] { require(parameters.text("text").find('\0') == std::string::npos); });
    tryTo([&] { parameters.number("number"); });
    tryTo([&] { parameters.integer("integer"); });
    tryTo([&] { require(static_cast<float>(parameters.seconds("seconds")) > 0); });
    tryTo([&] { parameters.boolean("boolean"); });
    tryTo([&] { require(static_cast<bool>(parameters.url("url"))); });
    tryTo([&] { require(!parameters.item("id")); }); // there are none
    tryTo([&] { require(parameters.items("ids")->isEmpty()); });
    tryTo([&] { checkArchive(parameters.archive("archive")); });
    tryTo([&] { parameters.choice({ "text", "url", "id" }); });
    return nullptr;
}

// The answer repeats the id as it stands.
void checkIdentifier(const tool::Request& request)
{
    const auto id = json::parse(request.id);
    require(id.is_string() || id.is_number() || id.is_null());
    require(request.id.find('\n') == std::string::npos);
    require(tool::validText(request.id) == request.id);
    require(!request.isNotification || id.is_null());
}

void handle(const std::string& line, const tool::MethodTable& methods)
{
    tool::Request request;
    try {
        tool::readRequest(line, request);
        checkIdentifier(request);
        // Almost no input has the name of a method that there is.
        request.method = "everything";
        methods.call(request);
    } catch (const RPCError& error) {
        checkIdentifier(request);
        checkError(error);
    }
}

tool::MethodTable makeMethods()
{
    tool::MethodTable methods;
    methods.add("everything", names, readEverything);
    return methods;
}

} // namespace

// The first byte says in which pieces the rest arrives.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const auto methods = makeMethods();
    if (!size)
        return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    const auto lines = linesOf(bytes, 1u + data[0]);
    checkLines(lines, bytes);
    for (const auto& line : lines)
        handle(line.text, methods);
    return 0;
}
