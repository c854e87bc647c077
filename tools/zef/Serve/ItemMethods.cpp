// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "tools/zef/JSON/ArchiveJSON.h"
#include "tools/zef/JSON/FileJSON.h"
#include "tools/zef/NumberedItem.h"
#include "tools/zef/Serve/Methods.h"

namespace tool {
namespace {

JSON jsonOfDate(const std::optional<zef::Date>& date)
{
    return date ? JSON(date->secondsSince1970()) : JSON();
}

JSON item(const Parameters& parameters)
{
    const auto item = parameters.item("id");
    return jsonOfItemInFull(*item);
}

JSON changesForObserver(const Parameters& parameters)
{
    const auto observer = parameters.text("observer");
    const auto item = parameters.item("id");
    const auto changes = NumberedItem::of(*item).changesForObserverNamed(observer);
    return JSONObject()
        .add("exists", changes.exists)
        .add("pathChanged", changes.pathChanged)
        .add("modified", changes.modified);
}

JSON updateForObserver(const Parameters& parameters)
{
    const auto observer = parameters.text("observer");
    const auto item = parameters.item("id");
    auto& numbered = NumberedItem::of(*item);
    if (!numbered.hasObserverNamed(observer))
        Parameters::refuse("the observer is not registered");
    const auto event = numbered.updateForObserverNamed(observer);
    return JSONObject()
        .add("delivered", event.has_value())
        .add("event", event ? JSON(static_cast<int>(*event)) : JSON());
}

JSON hold(Session& session, const zef::Ref<ZEFFileItem>& item)
{
    if (item)
        session.items[numberOf(*item)] = item;
    return jsonOfItem(item.get());
}

JSON fileItem(Session& session, const Parameters& parameters)
{
    const auto given = parameters.choice({ "path", "url" });
    if (given.empty())
        Parameters::refuse("path or url is missing");
    const auto& fileClass = *ZEFFileManager::defaultFileManager()->fileClass();
    const auto item = given == "path" ? fileClass.newFileItemForPath(parameters.text(given))
                                      : fileClass.newFileItemForURL(parameters.url(given));
    return hold(session, item);
}

JSON fileItemForArchiveDictionary(Session& session, const Parameters& parameters)
{
    const auto archive = parameters.archive("archive");
    const auto& fileClass = *ZEFFileManager::defaultFileManager()->fileClass();
    return hold(session, fileClass.newFileItemForArchiveDictionary(archive.get()));
}

void addAccess(MethodTable& table, Session& session)
{
    table.add("fileItem", { "path", "url" },
        [&](const Parameters& parameters) { return fileItem(session, parameters); });
    table.add("fileItemForArchiveDictionary", { "archive" }, [&](const Parameters& parameters) {
        return fileItemForArchiveDictionary(session, parameters);
    });
    table.add("releaseItem", { "id" }, [&](const Parameters& parameters) {
        const auto item = parameters.item("id");
        session.items.erase(numberOf(*item));
        return true;
    });
}

void addQuestions(MethodTable& table)
{
    table.add("item", { "id" }, item);
    table.add("archiveDictionary", { "id" }, [](const Parameters& parameters) {
        const auto archive = parameters.item("id")->archiveDictionary();
        return archive ? jsonOfArchive(*archive) : JSON();
    });
    table.add("currentURL", { "id" }, [](const Parameters& parameters) {
        return jsonOfURL(parameters.item("id")->currentURL());
    });
    table.add("currentPath", { "id" }, [](const Parameters& parameters) {
        const auto path = parameters.item("id")->currentPath();
        return JSON(path);
    });
    table.add("modificationDate", { "id" }, [](const Parameters& parameters) {
        return jsonOfDate(parameters.item("id")->modificationDate());
    });
    table.add("currentModificationDate", { "id" }, [](const Parameters& parameters) {
        return jsonOfDate(parameters.item("id")->currentModificationDate());
    });
}

void addObservation(MethodTable& table)
{
    table.add("registerFileObserver", { "id", "observer" }, [](const Parameters& parameters) {
        const auto item = parameters.item("id");
        return NumberedItem::of(*item).registerObserverNamed(parameters.text("observer"));
    });
    table.add("removeFileObserver", { "id", "observer" }, [](const Parameters& parameters) {
        const auto item = parameters.item("id");
        return NumberedItem::of(*item).removeObserverNamed(parameters.text("observer"));
    });
    table.add("changesForObserver", { "id", "observer" }, changesForObserver);
    table.add("updateForObserver", { "id", "observer" }, updateForObserver);
    table.add("initKQueue", { "id" }, [](const Parameters& parameters) {
        parameters.item("id")->initKQueue();
        return true;
    });
    table.add("endKQueue", { "id" }, [](const Parameters& parameters) {
        parameters.item("id")->endKQueue();
        return true;
    });
}

void addBasicInfo(MethodTable& table)
{
    table.add("basicInfo", { "id" }, [](const Parameters& parameters) {
        const auto item = parameters.basicInfoItem("id");
        JSONObject result;
        addBasicInfo(result, *item);
        return result;
    });
    table.add("resetAliasStatus", { "id" }, [](const Parameters& parameters) {
        return parameters.basicInfoItem("id")->resetAliasStatus();
    });
    table.add("conformsTo", { "uti", "to" }, [](const Parameters& parameters) {
        return zef::TypeTable::shared().conforms(parameters.text("uti"), parameters.text("to"));
    });
}

} // namespace

void addItemMethods(MethodTable& table, Session& session)
{
    addAccess(table, session);
    addQuestions(table);
    addObservation(table);
    addBasicInfo(table);
}

} // namespace tool
