// SPDX-License-Identifier: MIT
#include "tools/zef/JSON/FileJSON.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "tools/zef/NumberedItem.h"

namespace tool {
namespace {

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

JSONObject objectOfItem(const ZEFFileItem& item)
{
    const auto url = item.isValid() ? item.url() : zef::FileURL();
    JSONObject result;
    result.add("id", numberOf(item))
        .add("class", item.objectClass().name)
        .add("url", jsonOfURL(url))
        .add("path", jsonOfPath(url))
        .add("device", item.fileDeviceNumber())
        .add("inode", item.fileiNode())
        .add("isValid", item.isValid())
        .add("isBasicDirectory", item.isBasicDirectory())
        .add("isSymlink", item.isSymlink());
    return result;
}

} // namespace

JSON jsonOfItem(const ZEFFileItem* item)
{
    return item ? objectOfItem(*item) : JSON();
}

JSONObject jsonOfItemInFull(const ZEFFileItem& item)
{
    auto result = objectOfItem(item);
    result.add("hash", item.hash())
        .add("fileiNodeHash", item.fileiNodeHash())
        .add("refValid", item.refValid())
        .add("usingKQueue", item.usingKQueue())
        .add("description", item.description());
    return result;
}

// An answer may depend on those before it, so their order counts.
void addBasicInfo(JSONObject& object, ZEFBasicInfoFileItem& item)
{
    object.add("fileName", item.fileName())
        .add("displayName", item.displayName())
        .add("uti", item.uti())
        .add("resolvedUTI", item.resolvedUTI())
        .add("resolvedURL", jsonOfURL(item.resolvedURL()))
        .add("resolvedPath", item.resolvedPath())
        .add("resolvedFile", jsonOfItem(item.resolvedFile().get()))
        .add("isDirectory", item.isDirectory())
        .add("isPackage", item.isPackage())
        .add("isApplication", item.isApplication())
        .add("isAlias", item.isAlias())
        .add("isRealFile", item.isRealFile())
        .add("isInvisible", item.isInvisible())
        .add("isRootDirectory", item.isRootDirectory())
        .add("isVolumesDirectory", item.isVolumesDirectory());
}

JSON jsonOfItems(const zef::Array<ZEFFileItem>& items)
{
    JSONArray result;
    for (const auto& item : items)
        result.add(jsonOfItem(item.get()));
    return result;
}

JSON jsonOfChanges(const ZEFChangeArray& changes)
{
    JSONArray result;
    for (const auto& record : changes) {
        result.add(JSONObject()
                       .add("event", static_cast<int>(record->event()))
                       .add("name", nameOfEvent(record->event()))
                       .add("file", jsonOfItem(record->file())));
    }
    return result;
}

JSON jsonOfURL(const zef::FileURL& url)
{
    return url ? JSON(url.absoluteString()) : JSON();
}

JSON jsonOfPath(const zef::FileURL& url)
{
    return url ? JSON(url.path()) : JSON();
}

} // namespace tool
