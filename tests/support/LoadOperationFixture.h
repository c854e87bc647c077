// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/ChangeWords.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>

/// A load of the folder "loaded", and a recorded log that must be empty at the end.
class LoadOperationFixture : public testing::Test {
protected:
    LoadOperationFixture()
    {
        folder.makeFolder("loaded");
        loaded = item("loaded");
        load->setLoadingDirectory(loaded);
    }

    ~LoadOperationFixture() override { EXPECT_THAT(log.lines(), testing::IsEmpty()); }

    zef::Ref<ZEFFileItem> item(std::string_view name) const
    {
        return ReportingItem::classObject.newFileItemForURL(folder.url(name));
    }

    zef::Stat stat(std::string_view name) const
    {
        zef::Stat result;
        zef::FileSystem::system().statLink(folder.path(name).c_str(), result);
        return result;
    }

    /// Empty files in the folder, named "000", "001", ...
    void writeFiles(std::size_t count)
    {
        for (std::size_t number = 0; number < count; ++number)
            folder.write("loaded/" + std::to_string(1000 + number).substr(1), "");
    }

    /// Runs the load on this thread; the names of what it found, in order.
    Words run()
    {
        load->start();
        return found();
    }

    /// The names of what the load has found so far.
    Words found() const
    {
        Words names;
        for (const auto& each : *load->loadingArray())
            names.push_back(nameOf(*each));
        return names;
    }

    /// The lines that were logged, which are expected.
    Words takeLog()
    {
        auto lines = log.lines();
        log.clear();
        return lines;
    }

    TemporaryFolder folder;
    LogRecorder log;
    zef::Ref<ZEFFileItem> loaded;
    zef::Ref<ZEFFileLoadOperation> load = zef::makeRef<ZEFFileLoadOperation>();
};
