// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/Parameters.h"

#include "tools/zef/ArchiveJSON.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/ItemNumbers.h"
#include "tools/zef/NumberedItem.h"
#include "tools/zef/Serve/RPCError.h"

#include <algorithm>
#include <cmath>

namespace tool {
namespace {

std::string inQuotes(const std::string& name)
{
    return '"' + name + '"';
}

} // namespace

Parameters::Parameters(const nlohmann::json& values, const std::vector<std::string>& known)
    : _values(values)
{
    if (!values.is_object())
        refuse("parameters are given by name, in an object");
    for (const auto& entry : values.items()) {
        if (std::find(known.begin(), known.end(), entry.key()) == known.end())
            refuse("there is no parameter " + inQuotes(entry.key()));
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
    if (!value(name).is_string())
        refuse(inQuotes(name) + " is no text");
    auto result = value(name).get<std::string>();
    if (result.find('\0') != std::string::npos)
        refuse(inQuotes(name) + " holds a NUL");
    return result;
}

std::uint64_t Parameters::number(const std::string& name) const
{
    const auto& given = value(name);
    if (given.is_number_unsigned())
        return given.get<std::uint64_t>();
    // Some languages write every number with a fraction.
    constexpr double tooLarge = 0x1p64;
    const double number = given.is_number() ? given.get<double>() : -1;
    if (number < 0 || number >= tooLarge || number != std::floor(number))
        refuse(inQuotes(name) + " is no whole number from 0 up");
    return static_cast<std::uint64_t>(number);
}

// Kept in 32 bits by the file manager.
double Parameters::seconds(const std::string& name) const
{
    const auto& given = value(name);
    const double number = given.is_number() ? given.get<double>() : 0;
    const auto kept = static_cast<float>(number);
    if (!std::isfinite(kept) || kept <= 0)
        refuse(inQuotes(name) + " is no positive number of seconds");
    return number;
}

bool Parameters::boolean(const std::string& name) const
{
    if (!value(name).is_boolean())
        refuse(inQuotes(name) + " is neither true nor false");
    return value(name).get<bool>();
}

zef::FileURL Parameters::url(const std::string& name) const
{
    auto result = zef::FileURL::fromString(text(name));
    if (!result)
        refuse(inQuotes(name) + " is no file URL");
    return result;
}

zef::Ref<ZEFFileItem> Parameters::item(const std::string& name) const
{
    const auto wanted = number(name);
    auto item = ItemNumbers::shared().item(wanted);
    if (!item)
        refuse("there is no file item " + std::to_string(wanted));
    return item;
}

zef::Ref<ZEFBasicInfoFileItem> Parameters::basicInfoItem(const std::string& name) const
{
    const auto found = item(name);
    auto* withBasicInfo = FileClasses::basicInfoItem(*found);
    if (!withBasicInfo)
        refuse("file item " + std::to_string(numberOf(*found)) + " is a plain one");
    return withBasicInfo;
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

const nlohmann::json* Parameters::find(const std::string& name) const
{
    const auto found = _values.find(name);
    return found == _values.end() || found->is_null() ? nullptr : &*found;
}

const nlohmann::json& Parameters::value(const std::string& name) const
{
    const auto* found = find(name);
    if (!found)
        refuse(inQuotes(name) + " is missing");
    return *found;
}

} // namespace tool
