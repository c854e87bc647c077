// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/ManagerMethods.h"

#include "tools/zef/FileClasses.h"

namespace tool {
namespace {

ZEFFileManager& manager()
{
    return *ZEFFileManager::defaultFileManager();
}

const ZEFFileItemClass& fileClassNamed(const std::string& name)
{
    const auto* found = FileClasses::named(name);
    if (!found)
        Parameters::refuse("there is no file class \"" + name + '"');
    return *found;
}

// Everything is looked at before anything is set, so that a wrong parameter changes nothing.
JSON applySettings(const Parameters& parameters)
{
    std::vector<std::pair<const char*, std::function<bool()>>> changes;
    if (parameters.has("fileClass")) {
        const auto& fileClass = fileClassNamed(parameters.text("fileClass"));
        changes.emplace_back("fileClass", [&] { return manager().setFileClass(&fileClass); });
    }
    if (parameters.has("asynchronous")) {
        const bool asynchronous = parameters.boolean("asynchronous");
        changes.emplace_back(
            "asynchronous", [=] { return manager().setAsynchronous(asynchronous); });
    }
    if (parameters.has("pollingInterval")) {
        const double seconds = parameters.seconds("pollingInterval");
        changes.emplace_back("pollingInterval", [=] {
            manager().setPollingInterval(seconds);
            return true;
        });
    }
    if (parameters.has("paused")) {
        const bool paused = parameters.boolean("paused");
        changes.emplace_back("paused", [=] {
            manager().setPaused(paused);
            return true;
        });
    }
    auto accepted = JSON::object();
    for (const auto& [name, apply] : changes)
        accepted[name] = apply();
    return accepted;
}

JSON settings(const Parameters& parameters)
{
    auto accepted = applySettings(parameters);
    return {
        { "accepted", std::move(accepted) },
        { "fileClass", manager().fileClass()->name },
        { "asynchronous", manager().asynchronous() },
        { "pollingInterval", manager().pollingInterval() },
        { "isPaused", manager().isPaused() },
    };
}

} // namespace

void ManagerMethods::addTo(MethodTable& table)
{
    table.add("settings", { "fileClass", "asynchronous", "pollingInterval", "paused" }, settings);
    table.add("checkFilesystem", {}, [](const Parameters&) {
        manager().checkFilesystem(nullptr);
        return true;
    });
    table.add("moveFilesToTrash", { "ids" }, [](const Parameters& parameters) {
        return manager().moveFilesToTrash(parameters.items("ids").get());
    });
    table.add("shutdown", {}, [this](const Parameters&) { return _isShutDown = true; });
}

} // namespace tool
