// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/ItemMethods.h"

#include "tools/zef/NumberedFileItem.h"
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
    auto result = jsonOfItem(item.get());
    result["hash"] = item->hash();
    result["fileiNodeHash"] = item->fileiNodeHash();
    result["refValid"] = item->refValid();
    result["usingKQueue"] = item->usingKQueue();
    result["description"] = item->description();
    return result;
}

JSON changesForObserver(const Parameters& parameters)
{
    const auto observer = parameters.text("observer");
    const auto changes = parameters.item("id")->changesForObserverNamed(observer);
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
    if (!item->hasObserverNamed(observer))
        Parameters::refuse("the observer is not registered");
    const auto event = item->updateForObserverNamed(observer);
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
    table.add("releaseItem", { "id" },
        [this](const Parameters& parameters) { return releaseItem(parameters); });
}

void ItemMethods::addQuestions(MethodTable& table)
{
    table.add("item", { "id" }, item);
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
        return parameters.item("id")->registerObserverNamed(parameters.text("observer"));
    });
    table.add("removeFileObserver", { "id", "observer" }, [](const Parameters& parameters) {
        return parameters.item("id")->removeObserverNamed(parameters.text("observer"));
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
    auto item = given == "path" ? fileClass.newFileItemForPath(parameters.text(given))
                                : fileClass.newFileItemForURL(parameters.url(given));
    auto result = jsonOfItem(item.get());
    if (item)
        _held[numberOf(*item)] = item;
    return result;
}

JSON ItemMethods::releaseItem(const Parameters& parameters)
{
    const auto item = parameters.item("id");
    _held.erase(item->number());
    return true;
}

} // namespace tool
