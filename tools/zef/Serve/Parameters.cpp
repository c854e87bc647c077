// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/Parameters.h"

#include "tools/zef/JSON/ArchiveJSON.h"
#include "tools/zef/NumberedItem.h"
#include "tools/zef/Serve/RPCError.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tool {
namespace {

std::string inQuotes(const std::string& name)
{
    return '"' + name + '"';
}

} // namespace

Parameters::Parameters(const JSONValue& values, const std::vector<std::string>& known)
    : _values(values)
{
    const auto* object = values.as<JSONValue::Object>();
    if (!object)
        refuse("parameters are given by name, in an object");
    for (const auto& [name, value] : *object) {
        if (std::find(known.begin(), known.end(), name) == known.end())
            refuse("there is no parameter " + inQuotes(name));
    }
}

std::string Parameters::choice(std::initializer_list<const char*> names) const
{
    std::string result;
    for (const char* name : names) {
        if (!has(name))
            continue;
        if (!result.empty())
            refuse("only one of " + inQuotes(result) + " and " + inQuotes(name) + " may be given");
        result = name;
    }
    return result;
}

std::string Parameters::text(const std::string& name) const
{
    const auto* result = value(name).as<std::string>();
    if (!result)
        refuse(inQuotes(name) + " is not text");
    if (result->find('\0') != std::string::npos)
        refuse(inQuotes(name) + " holds a NUL");
    return *result;
}

std::uint64_t Parameters::number(const std::string& name) const
{
    return number(name, value(name));
}

std::uint64_t Parameters::number(const std::string& name, const JSONValue& given)
{
    if (const auto* whole = given.as<std::uint64_t>())
        return *whole;
    // Some languages write every number with a fraction.
    constexpr double tooLarge = 0x1p64;
    const double number = given.number().value_or(-1);
    if (number < 0 || number >= tooLarge || number != std::floor(number))
        refuse(inQuotes(name) + " is not a whole number from 0 up");
    return static_cast<std::uint64_t>(number);
}

std::ptrdiff_t Parameters::integer(const std::string& name) const
{
    const auto& given = value(name);
    if (const auto* negative = given.as<std::int64_t>())
        return *negative;
    constexpr auto largest = std::uint64_t{ std::numeric_limits<std::ptrdiff_t>::max() };
    if (const auto* whole = given.as<std::uint64_t>(); whole && *whole <= largest)
        return static_cast<std::ptrdiff_t>(*whole);
    constexpr double limit = 0x1p63;
    const auto* fraction = given.as<JSONValue::Fraction>();
    const double number = fraction ? fraction->value : limit;
    if (number < -limit || number >= limit || number != std::floor(number))
        refuse(inQuotes(name) + " is not a whole number, or is out of range");
    return static_cast<std::ptrdiff_t>(number);
}

// Kept in 32 bits by the file manager.
double Parameters::seconds(const std::string& name) const
{
    const double number = value(name).number().value_or(0);
    const auto kept = static_cast<float>(number);
    if (!std::isfinite(kept) || kept <= 0)
        refuse(inQuotes(name) + " is not a positive number of seconds");
    return number;
}

bool Parameters::boolean(const std::string& name) const
{
    const auto* given = value(name).as<bool>();
    if (!given)
        refuse(inQuotes(name) + " is neither true nor false");
    return *given;
}

zef::FileURL Parameters::url(const std::string& name) const
{
    auto result = zef::FileURL::fromString(text(name));
    if (!result)
        refuse(inQuotes(name) + " is not a file URL");
    return result;
}

zef::Ref<ZEFFileItem> Parameters::item(const std::string& name) const
{
    return item(number(name));
}

zef::Ref<ZEFFileItem> Parameters::item(std::uint64_t number)
{
    auto item = NumberedItem::itemWithNumber(number);
    if (!item)
        refuse("there is no file item " + std::to_string(number));
    return item;
}

zef::Ref<ZEFFileItemArray> Parameters::items(const std::string& name) const
{
    const auto* given = value(name).as<JSONValue::List>();
    if (!given)
        refuse(inQuotes(name) + " is not a list");
    auto result = zef::makeRef<ZEFFileItemArray>();
    for (const auto& entry : *given)
        result->addObject(item(number(name, entry)));
    return result;
}

zef::Ref<ZEFBasicInfoFileItem> Parameters::basicInfoItem(const std::string& name) const
{
    const auto found = item(name);
    return &withBasicInfo(*found);
}

ZEFBasicInfoFileItem& Parameters::withBasicInfo(ZEFFileItem& item)
{
    auto* result = zef::downcast<ZEFBasicInfoFileItem>(&item);
    if (!result)
        refuse("file item " + std::to_string(numberOf(item)) + " is a plain one");
    return *result;
}

zef::Ref<ZEFArchiveDictionary> Parameters::archive(const std::string& name) const
{
    try {
        return archiveOfJSON(value(name));
    } catch (const std::invalid_argument& error) {
        refuse(error.what());
    }
}

void Parameters::refuse(const std::string& message)
{
    throw RPCError(RPCError::wrongParameters, message);
}

const JSONValue* Parameters::find(const std::string& name) const
{
    const auto* found = _values.member(name);
    return found && !found->isNull() ? found : nullptr;
}

const JSONValue& Parameters::value(const std::string& name) const
{
    const auto* found = find(name);
    if (!found)
        refuse(inQuotes(name) + " is missing");
    return *found;
}

} // namespace tool
