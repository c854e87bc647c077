// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "tools/zef/FileClasses.h"
#include "tools/zef/Serve/Methods.h"

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
    JSONObject accepted;
    for (const auto& [name, apply] : changes)
        accepted.add(name, apply());
    return accepted;
}

JSON settings(const Parameters& parameters)
{
    const auto accepted = applySettings(parameters);
    return JSONObject()
        .add("accepted", accepted)
        .add("fileClass", manager().fileClass()->name)
        .add("asynchronous", manager().asynchronous())
        .add("pollingInterval", manager().pollingInterval())
        .add("isPaused", manager().isPaused());
}

} // namespace

void addManagerMethods(MethodTable& table, Session& session)
{
    table.add("settings", { "fileClass", "asynchronous", "pollingInterval", "paused" }, settings);
    table.add("checkFilesystem", {}, [](const Parameters&) {
        manager().checkFilesystem(nullptr);
        return true;
    });
    table.add("moveFilesToTrash", { "ids" }, [](const Parameters& parameters) {
        return manager().moveFilesToTrash(parameters.items("ids").get());
    });
    table.add("shutdown", {}, [&](const Parameters&) { return session.isShutDown = true; });
}

} // namespace tool
