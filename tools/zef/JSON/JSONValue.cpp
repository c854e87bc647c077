// SPDX-License-Identifier: MIT
#include "tools/zef/JSON/JSONValue.h"

#include <algorithm>

namespace tool {

JSONValue::JSONValue(Variant value)
    : _value(std::move(value))
{
}

std::optional<double> JSONValue::number() const
{
    if (const auto* fraction = as<Fraction>())
        return fraction->value;
    if (const auto* number = as<std::uint64_t>())
        return static_cast<double>(*number);
    if (const auto* number = as<std::int64_t>())
        return static_cast<double>(*number);
    return std::nullopt;
}

const JSONValue* JSONValue::member(std::string_view name) const
{
    const auto* object = as<Object>();
    if (!object)
        return nullptr;
    const auto found = std::find_if(
        object->rbegin(), object->rend(), [=](const auto& member) { return member.first == name; });
    return found == object->rend() ? nullptr : &found->second;
}

} // namespace tool
