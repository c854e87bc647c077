// SPDX-License-Identifier: MIT
#include "tools/zef/JSON/ArchiveJSON.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"
#include "ZEFFilesystemTools/Platform/Paths/FileURL.h"

#include "tools/zef/JSON/Base64.h"
#include "tools/zef/JSON/FileJSON.h"
#include "tools/zef/Text.h"

#include <stdexcept>
#include <variant>

namespace tool {
namespace {

constexpr auto pathURLKey = "ZEFArchivePathURL";

JSON jsonOfValue(const ZEFArchiveDictionary::Value& value)
{
    if (const auto* text = std::get_if<std::string>(&value))
        return *text;
    if (const auto* data = std::get_if<ZEFArchiveDictionary::Bytes>(&value))
        return Base64::encode(*data);
    return std::get<bool>(value);
}

[[noreturn]] void refuse(const char* key, const char* reason)
{
    throw std::invalid_argument('"' + std::string(key) + "\" " + reason);
}

const JSONValue* find(const JSONValue& object, const char* key)
{
    const auto* found = object.member(key);
    return found && !found->isNull() ? found : nullptr;
}

const std::string* findText(const JSONValue& object, const char* key)
{
    const auto* found = find(object, key);
    const auto* text = found ? found->as<std::string>() : nullptr;
    if (found && !text)
        refuse(key, "is not text");
    return text;
}

std::optional<std::string> pathIn(const JSONValue& object)
{
    if (const auto* text = findText(object, pathURLKey)) {
        const auto url = zef::FileURL::fromString(*text);
        if (!url)
            refuse(pathURLKey, "is not a file URL");
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
    JSONObject result;
    archive.enumerate([&](const std::string& key, const ZEFArchiveDictionary::Value& value) {
        result.add(key, jsonOfValue(value));
    });
    const auto* path = archive.stringForKey(ZEFArchivePathKey);
    if (path && validText(*path) != *path)
        result.add(pathURLKey, jsonOfURL(zef::FileURL::fromPath(*path, zef::URLKind::file)));
    return result;
}

zef::Ref<ZEFArchiveDictionary> archiveOfJSON(const JSONValue& object)
{
    if (!object.as<JSONValue::Object>())
        throw std::invalid_argument("an archive is an object");
    auto result = zef::makeRef<ZEFArchiveDictionary>();
    if (const auto path = pathIn(object))
        result->setStringForKey(*path, ZEFArchivePathKey);
    if (const auto* text = findText(object, ZEFArchiveDataKey)) {
        auto data = Base64::decode(*text);
        if (!data)
            refuse(ZEFArchiveDataKey, "is not base64");
        result->setDataForKey(std::move(*data), ZEFArchiveDataKey);
    }
    if (const auto* isAlias = find(object, ZEFArchiveIsAliasKey)) {
        const auto* value = isAlias->as<bool>();
        if (!value)
            refuse(ZEFArchiveIsAliasKey, "is neither true nor false");
        result->setBooleanForKey(*value, ZEFArchiveIsAliasKey);
    }
    return result;
}

} // namespace tool
