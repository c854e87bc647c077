// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/ItemMethods.h"

#include "tools/zef/ArchiveJSON.h"
#include "tools/zef/NumberedItem.h"
#include "tools/zef/Text.h"

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
    return {
        { "exists", changes.exists },
        { "pathChanged", changes.pathChanged },
        { "modified", changes.modified },
    };
}

JSON updateForObserver(const Parameters& parameters)
{
    const auto observer = parameters.text("observer");
    const auto item = parameters.item("id");
    auto& numbered = NumberedItem::of(*item);
    if (!numbered.hasObserverNamed(observer))
        Parameters::refuse("the observer is not registered");
    const auto event = numbered.updateForObserverNamed(observer);
    return {
        { "delivered", event.has_value() },
        { "event", event ? JSON(static_cast<int>(*event)) : JSON() },
    };
}

} // namespace

void ItemMethods::addTo(MethodTable& table)
{
    addAccess(table);
    addQuestions(table);
    addObservation(table);
}

void ItemMethods::addAccess(MethodTable& table)
{
    table.add("fileItem", { "path", "url" },
        [this](const Parameters& parameters) { return fileItem(parameters); });
    table.add("fileItemForArchiveDictionary", { "archive" },
        [this](const Parameters& parameters) { return fileItemForArchiveDictionary(parameters); });
    table.add("releaseItem", { "id" },
        [this](const Parameters& parameters) { return releaseItem(parameters); });
}

void ItemMethods::addQuestions(MethodTable& table)
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
        return path ? JSON(validText(*path)) : JSON();
    });
    table.add("modificationDate", { "id" }, [](const Parameters& parameters) {
        return jsonOfDate(parameters.item("id")->modificationDate());
    });
    table.add("currentModificationDate", { "id" }, [](const Parameters& parameters) {
        return jsonOfDate(parameters.item("id")->currentModificationDate());
    });
}

void ItemMethods::addObservation(MethodTable& table)
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

JSON ItemMethods::fileItem(const Parameters& parameters)
{
    const auto given = parameters.choice({ "path", "url" });
    if (given.empty())
        Parameters::refuse("path or url is missing");
    const auto& fileClass = *ZEFFileManager::defaultFileManager()->fileClass();
    const auto item = given == "path" ? fileClass.newFileItemForPath(parameters.text(given))
                                      : fileClass.newFileItemForURL(parameters.url(given));
    return hold(item);
}

JSON ItemMethods::fileItemForArchiveDictionary(const Parameters& parameters)
{
    const auto archive = parameters.archive("archive");
    const auto& fileClass = *ZEFFileManager::defaultFileManager()->fileClass();
    return hold(fileClass.newFileItemForArchiveDictionary(archive.get()));
}

JSON ItemMethods::hold(const zef::Ref<ZEFFileItem>& item)
{
    auto result = jsonOfItem(item.get());
    if (item)
        _held[numberOf(*item)] = item;
    return result;
}

JSON ItemMethods::releaseItem(const Parameters& parameters)
{
    const auto item = parameters.item("id");
    _held.erase(numberOf(*item));
    return true;
}

} // namespace tool
