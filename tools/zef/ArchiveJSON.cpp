// SPDX-License-Identifier: MIT
#include "tools/zef/ArchiveJSON.h"

#include "tools/zef/Base64.h"
#include "tools/zef/Text.h"

#include <stdexcept>
#include <variant>

namespace tool {
namespace {

using nlohmann::json;

constexpr auto pathURLKey = "ZEFArchivePathURL";

JSON jsonOfValue(const ZEFArchiveDictionary::Value& value)
{
    if (const auto* text = std::get_if<std::string>(&value))
        return validText(*text);
    if (const auto* data = std::get_if<ZEFArchiveDictionary::Bytes>(&value))
        return Base64::encode(*data);
    return std::get<bool>(value);
}

[[noreturn]] void refuse(const char* key, const char* reason)
{
    throw std::invalid_argument('"' + std::string(key) + "\" " + reason);
}

const json* find(const json& object, const char* key)
{
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

const std::string* findText(const json& object, const char* key)
{
    const auto* found = find(object, key);
    if (found && !found->is_string())
        refuse(key, "is no text");
    return found ? found->get_ptr<const std::string*>() : nullptr;
}

std::optional<std::string> pathIn(const json& object)
{
    if (const auto* text = findText(object, pathURLKey)) {
        const auto url = zef::FileURL::fromString(*text);
        if (!url)
            refuse(pathURLKey, "is no file URL");
        return url.path();
    }
    const auto* path = findText(object, ZEFArchivePathKey);
    if (!path)
        return std::nullopt;
    if (path->find('\0') != std::string::npos)
        refuse(ZEFArchivePathKey, "holds a NUL");
    return *path;
}

} // namespace

JSON jsonOfArchive(const ZEFArchiveDictionary& archive)
{
    auto result = JSON::object();
    archive.enumerate([&](const std::string& key, const ZEFArchiveDictionary::Value& value) {
        result[key] = jsonOfValue(value);
    });
    const auto* path = archive.stringForKey(ZEFArchivePathKey);
    if (path && validText(*path) != *path)
        result[pathURLKey] = jsonOfURL(zef::FileURL::fromPath(*path, zef::URLKind::file));
    return result;
}

zef::Ref<ZEFArchiveDictionary> archiveOfJSON(const json& object)
{
    if (!object.is_object())
        throw std::invalid_argument("an archive is an object");
    auto result = zef::makeRef<ZEFArchiveDictionary>();
    if (const auto path = pathIn(object))
        result->setStringForKey(*path, ZEFArchivePathKey);
    if (const auto* text = findText(object, ZEFArchiveDataKey)) {
        auto data = Base64::decode(*text);
        if (!data)
            refuse(ZEFArchiveDataKey, "is no base64");
        result->setDataForKey(std::move(*data), ZEFArchiveDataKey);
    }
    if (const auto* isAlias = find(object, ZEFArchiveIsAliasKey)) {
        if (!isAlias->is_boolean())
            refuse(ZEFArchiveIsAliasKey, "is neither true nor false");
        result->setBooleanForKey(isAlias->get<bool>(), ZEFArchiveIsAliasKey);
    }
    return result;
}

} // namespace tool
