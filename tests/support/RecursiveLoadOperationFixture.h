// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/LoadOperationFixture.h"

#include <algorithm>
#include <initializer_list>
#include <string>

/// A walk that begins with the folder "loaded", and a recorded log that must be empty at the end.
class RecursiveLoadOperationFixture : public LoadOperationFixture {
protected:
    RecursiveLoadOperationFixture()
    {
        load->setRecursive(true);
        begin({ "loaded" });
    }

    ~RecursiveLoadOperationFixture() override
    {
        if (load->isCancelled())
            giveUpFolders();
    }

    /// Sets the files that the walk begins with.
    void begin(std::initializer_list<std::string_view> names)
    {
        auto files = zef::makeRef<ZEFFileItemArray>();
        for (const auto name : names)
            files->addObject(item(name));
        load->setFilesToIterate(files.get());
    }

    /// Runs the walk on this thread; where what it found is in the temporary folder, in order.
    Words walk()
    {
        load->start();
        return places();
    }

    Words sortedWalk()
    {
        auto found = walk();
        std::sort(found.begin(), found.end());
        return found;
    }

    Words places() const
    {
        Words result;
        for (const auto& each : *load->loadingArray()) {
            auto path = each->url().path().substr(folder.path().size() + 1);
            if (path.ends_with('/'))
                path.pop_back();
            result.push_back(std::move(path));
        }
        return result;
    }

private:
    // A walk that was cancelled keeps the folders that it came to for good, which other tests must
    // not notice.
    void giveUpFolders()
    {
        auto items = load->loadingArray()->takeAllObjects();
        items.push_back(std::move(loaded));
        load = nullptr;
        std::sort(items.begin(), items.end(),
            [](const auto& left, const auto& right) { return left.get() < right.get(); });
        items.erase(std::unique(items.begin(), items.end()), items.end());
        for (const auto& each : items) {
            while (each->retainCount() > 1)
                each->release();
        }
    }
};
