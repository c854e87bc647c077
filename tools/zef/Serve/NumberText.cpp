// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/NumberText.h"

#include <nlohmann/json.hpp>

#include <cstdint>

namespace tool {
namespace {

class IdentifierReader final : public nlohmann::json_sax<nlohmann::json> {
public:
    std::string text;

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(std::int64_t) override { return true; }
    bool number_unsigned(std::uint64_t) override { return true; }
    bool string(std::string&) override { return true; }
    bool binary(nlohmann::json::binary_t&) override { return true; }

    bool number_float(double, const std::string& written) override
    {
        if (_depth == 1 && _isIdentifier)
            text = written;
        return true;
    }

    bool key(std::string& name) override
    {
        if (_depth == 1)
            _isIdentifier = name == "id";
        return true;
    }

    bool start_object(std::size_t) override { return enter(); }
    bool end_object() override { return leave(); }
    bool start_array(std::size_t) override { return enter(); }
    bool end_array() override { return leave(); }

    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) override
    {
        return false;
    }

private:
    bool enter() { return ++_depth; }
    bool leave() { return _depth--; }

    std::size_t _depth = 0;
    bool _isIdentifier = false;
};

} // namespace

std::string textOfIdentifier(const std::string& json)
{
    IdentifierReader reader;
    nlohmann::json::sax_parse(json, &reader);
    return reader.text;
}

} // namespace tool
