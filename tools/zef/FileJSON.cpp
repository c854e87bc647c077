// SPDX-License-Identifier: MIT
#include "tools/zef/FileJSON.h"

#include "tools/zef/NumberedItem.h"
#include "tools/zef/Text.h"

namespace tool {
namespace {

JSON jsonOfText(const std::optional<std::string>& text)
{
    return text ? JSON(validText(*text)) : JSON();
}

} // namespace

const char* nameOfEvent(ZEFFileEvent event)
{
    switch (event) {
    case ZEFFileEvent::moved:
        return "moved";
    case ZEFFileEvent::renamed:
        return "renamed";
    case ZEFFileEvent::removed:
        return "removed";
    case ZEFFileEvent::updated:
        return "updated";
    case ZEFFileEvent::appeared:
        return "appeared";
    case ZEFFileEvent::movedInParent:
        return "movedInParent";
    }
    return "unknown";
}

JSON jsonOfItem(const ZEFFileItem* item)
{
    if (!item)
        return nullptr;
    const auto url = item->isValid() ? item->url() : zef::FileURL();
    return {
        { "id", numberOf(*item) },
        { "class", item->objectClass().name },
        { "url", jsonOfURL(url) },
        { "path", jsonOfPath(url) },
        { "device", item->fileDeviceNumber() },
        { "inode", item->fileiNode() },
        { "isValid", item->isValid() },
        { "isBasicDirectory", item->isBasicDirectory() },
        { "isSymlink", item->isSymlink() },
    };
}

JSON jsonOfItemInFull(const ZEFFileItem& item)
{
    auto result = jsonOfItem(&item);
    result["hash"] = item.hash();
    result["fileiNodeHash"] = item.fileiNodeHash();
    result["refValid"] = item.refValid();
    result["usingKQueue"] = item.usingKQueue();
    result["description"] = item.description();
    return result;
}

// An answer may depend on those before it, so their order counts.
JSON jsonOfBasicInfo(ZEFBasicInfoFileItem& item)
{
    return {
        { "fileName", jsonOfText(item.fileName()) },
        { "displayName", jsonOfText(item.displayName()) },
        { "uti", jsonOfText(item.uti()) },
        { "resolvedUTI", jsonOfText(item.resolvedUTI()) },
        { "resolvedURL", jsonOfURL(item.resolvedURL()) },
        { "resolvedPath", jsonOfText(item.resolvedPath()) },
        { "resolvedFile", jsonOfItem(item.resolvedFile().get()) },
        { "isDirectory", item.isDirectory() },
        { "isPackage", item.isPackage() },
        { "isApplication", item.isApplication() },
        { "isAlias", item.isAlias() },
        { "isRealFile", item.isRealFile() },
        { "isInvisible", item.isInvisible() },
        { "isRootDirectory", item.isRootDirectory() },
        { "isVolumesDirectory", item.isVolumesDirectory() },
    };
}

JSON jsonOfItems(const ZEFFileItemArray& items)
{
    auto result = JSON::array();
    for (const auto& item : items)
        result.push_back(jsonOfItem(item.get()));
    return result;
}

JSON jsonOfChanges(const ZEFChangeArray& changes)
{
    auto result = JSON::array();
    for (const auto& record : changes) {
        result.push_back({
            { "event", static_cast<int>(record->event()) },
            { "name", nameOfEvent(record->event()) },
            { "file", jsonOfItem(record->file()) },
        });
    }
    return result;
}

JSON jsonOfURL(const zef::FileURL& url)
{
    return url ? JSON(url.absoluteString()) : JSON();
}

JSON jsonOfPath(const zef::FileURL& url)
{
    return url ? JSON(validText(url.path())) : JSON();
}

std::string lineOfJSON(const JSON& json)
{
    return json.dump(-1, ' ', false, JSON::error_handler_t::replace) + '\n';
}

} // namespace tool
