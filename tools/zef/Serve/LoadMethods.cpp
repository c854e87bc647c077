// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"

#include "tools/zef/JSON/FileJSON.h"
#include "tools/zef/Serve/Methods.h"

#include <utility>

namespace tool {
namespace {

struct Filters {
    zef::Ref<ZEFFileFilter> file;
    zef::Ref<ZEFDirectoryFilter> directory = ZEFDirectoryFilter::filter();
    bool needBasicInfo = false;
};

void chooseFileFilter(const std::string& name, Filters& filters)
{
    if (name == "all") {
        filters.file = ZEFFileFilter::filter();
    } else if (name == "visible") {
        filters.file = ZEFVisibleFileFilter::filter();
        filters.needBasicInfo = true;
    } else if (name != "none") {
        Parameters::refuse("there is no file filter \"" + name + '"');
    }
}

void chooseDirectoryFilter(const std::string& name, Filters& filters)
{
    if (name == "none") {
        filters.directory = nullptr;
    } else if (name == "normal") {
        filters.directory = ZEFNormalDirectoryFilter::filter();
        filters.needBasicInfo = true;
    } else if (name != "all") {
        Parameters::refuse("there is no directory filter \"" + name + '"');
    }
}

Filters filtersOf(const Parameters& parameters)
{
    Filters filters;
    if (parameters.has("fileFilter"))
        chooseFileFilter(parameters.text("fileFilter"), filters);
    if (parameters.has("directoryFilter"))
        chooseDirectoryFilter(parameters.text("directoryFilter"), filters);
    return filters;
}

/// What to begin with.
struct Beginning {
    /// One folder when it is not recursive.
    zef::Ref<ZEFFileItemArray> files;
    bool isRecursive;
    std::ptrdiff_t depth = -1;
};

Beginning flatBeginning(const Parameters& parameters)
{
    if (parameters.has("depth"))
        Parameters::refuse(R"("depth" goes with "ids" alone)");
    Beginning result{ zef::makeRef<ZEFFileItemArray>(), false };
    result.files->addObject(parameters.item("id"));
    return result;
}

Beginning beginningOf(const Parameters& parameters)
{
    const auto given = parameters.choice({ "id", "ids" });
    if (given.empty())
        Parameters::refuse("id or ids is missing");
    if (given == "id")
        return flatBeginning(parameters);
    return { parameters.items("ids"), true, parameters.integer("depth") };
}

void start(ZEFAsynchronousFileLoader& loader, const Beginning& beginning)
{
    if (beginning.isRecursive)
        loader.startRecursivelyWithFilesToDepth(beginning.files.get(), beginning.depth);
    else
        loader.startWithDirectory(beginning.files->objectAtIndex(0));
}

// Everything is looked at before anything is started.
JSON load(Session& session, const Parameters& parameters)
{
    auto filters = filtersOf(parameters);
    const auto beginning = beginningOf(parameters);
    for (const auto& file : *beginning.files) {
        if (filters.needBasicInfo)
            Parameters::withBasicInfo(*file);
    }
    const auto number = ++session.lastLoad;
    const auto& load = session.loads[number] = zef::makeRef<LoadReporter>(number);
    load->loader().setFileFilter(std::move(filters.file));
    load->loader().setDirectoryFilter(std::move(filters.directory));
    start(load->loader(), beginning);
    return JSONObject().add("loader", number);
}

JSON cancelLoad(const Session& session, const Parameters& parameters)
{
    const auto number = parameters.number("loader");
    const auto found = session.loads.find(number);
    if (found == session.loads.end())
        Parameters::refuse("there is no loader " + std::to_string(number));
    auto& load = *found->second;
    load.cancel();
    return JSONObject()
        .add("isLoading", load.loader().isLoading())
        .add("isComplete", load.loader().isComplete());
}

} // namespace

void addLoadMethods(MethodTable& table, Session& session)
{
    table.add("load", { "id", "ids", "depth", "fileFilter", "directoryFilter" },
        [&](const Parameters& parameters) { return load(session, parameters); });
    table.add("filesInDirectory", { "id" }, [](const Parameters& parameters) {
        const auto folder = parameters.item("id");
        const auto files = ZEFFileManager::defaultFileManager()->filesInDirectory(folder.get());
        return files ? jsonOfItems(*files) : JSONArray();
    });
    table.add("cancelLoad", { "loader" },
        [&](const Parameters& parameters) { return cancelLoad(session, parameters); });
}

} // namespace tool
