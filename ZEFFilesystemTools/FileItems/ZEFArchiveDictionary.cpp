// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFArchiveDictionary.h"

#include <algorithm>

const char* const ZEFArchiveDataKey = "ZEFArchiveDataKey";
const char* const ZEFArchivePathKey = "ZEFArchivePathKey";

const zef::Class ZEFArchiveDictionary::classObject{ "ZEFArchiveDictionary",
    &ZEFObject::classObject };

namespace {

auto findEntry(auto& entries, std::string_view key)
{
    return std::find_if(
        entries.begin(), entries.end(), [key](const auto& entry) { return entry.first == key; });
}

std::string textOf(const ZEFArchiveDictionary::Value& value)
{
    if (const auto* text = std::get_if<std::string>(&value))
        return *text;
    if (const auto* data = std::get_if<ZEFArchiveDictionary::Bytes>(&value))
        return "<" + std::to_string(data->size()) + " bytes>";
    return std::get<bool>(value) ? "1" : "0";
}

} // namespace

const ZEFArchiveDictionary::Value* ZEFArchiveDictionary::valueForKey(std::string_view key) const
{
    const auto entry = findEntry(_entries, key);
    return entry == _entries.end() ? nullptr : &entry->second;
}

const std::string* ZEFArchiveDictionary::stringForKey(std::string_view key) const
{
    return std::get_if<std::string>(valueForKey(key));
}

const ZEFArchiveDictionary::Bytes* ZEFArchiveDictionary::dataForKey(std::string_view key) const
{
    return std::get_if<Bytes>(valueForKey(key));
}

bool ZEFArchiveDictionary::booleanForKey(std::string_view key) const
{
    const auto* value = std::get_if<bool>(valueForKey(key));
    return value && *value;
}

void ZEFArchiveDictionary::setValueForKey(Value value, std::string_view key)
{
    ++_mutations;
    const auto entry = findEntry(_entries, key);
    if (entry == _entries.end())
        _entries.emplace_back(key, std::move(value));
    else
        entry->second = std::move(value);
}

void ZEFArchiveDictionary::setStringForKey(std::string_view value, std::string_view key)
{
    setValueForKey(std::string(value), key);
}

void ZEFArchiveDictionary::setDataForKey(Bytes value, std::string_view key)
{
    setValueForKey(std::move(value), key);
}

void ZEFArchiveDictionary::setBooleanForKey(bool value, std::string_view key)
{
    setValueForKey(value, key);
}

void ZEFArchiveDictionary::removeValueForKey(std::string_view key)
{
    const auto entry = findEntry(_entries, key);
    if (entry == _entries.end())
        return;
    ++_mutations;
    _entries.erase(entry);
}

bool ZEFArchiveDictionary::isEqual(const ZEFObject* other) const
{
    if (other == this)
        return true;
    const auto* dictionary = zef::downcast<ZEFArchiveDictionary>(other);
    return dictionary && dictionary->count() == count()
        && std::all_of(_entries.begin(), _entries.end(), [&](const Entry& entry) {
               const auto* value = dictionary->valueForKey(entry.first);
               return value && *value == entry.second;
           });
}

std::size_t ZEFArchiveDictionary::hash() const
{
    return count();
}

std::string ZEFArchiveDictionary::description() const
{
    std::string text = "{ ";
    for (const auto& [key, value] : _entries)
        text += key + " = " + textOf(value) + "; ";
    return text + "}";
}
