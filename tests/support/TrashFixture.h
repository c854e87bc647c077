// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Trash/Trash.h"

#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// A folder "files" and, on the same volume, a home trash of the test's own.
class TrashFixture : public testing::Test {
protected:
    using Names = std::vector<std::string>;

    TrashFixture() { folder.makeFolder("files"); }

    /// The entry of a request for what has this name in the temporary folder.
    zef::TrashEntry entry(std::string_view name) const { return entryAt(folder.path(name)); }

    static zef::TrashEntry entryAt(const std::string& path)
    {
        zef::Stat stat;
        EXPECT_EQ(zef::FileSystem::system().statLink(path.c_str(), stat), 0) << path;
        const auto kind = stat.isFolder() ? zef::URLKind::folder : zef::URLKind::file;
        return { zef::FSRef(stat), zef::FileURL::fromPath(path, kind) };
    }

    /// Asks for these files, as they are named in the temporary folder, to be moved.
    zef::TrashOutcome trash(const Names& names)
    {
        std::vector<zef::TrashEntry> entries;
        for (const auto& name : names)
            entries.push_back(entry(name));
        return trash(entries);
    }

    zef::TrashOutcome trash(const std::vector<zef::TrashEntry>& entries)
    {
        return zef::Trash::system().moveToTrash(entries, refusal);
    }

    /// The names in a folder, in order; empty when there is none.
    static Names namesAt(const std::string& path)
    {
        Names names;
        std::error_code error;
        for (const auto& found : std::filesystem::directory_iterator(path, error))
            names.push_back(found.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    Names namesIn(std::string_view name) const { return namesAt(folder.path(name)); }

    /// What lies in the home trash.
    Names trashed() const { return namesIn("data/Trash/files"); }
    Names infos() const { return namesIn("data/Trash/info"); }
    std::string info(const std::string& name) const
    {
        return folder.contents("data/Trash/info/" + name + ".trashinfo");
    }

    TemporaryFolder folder;
    EnvironmentVariable dataHome{ "XDG_DATA_HOME", folder.path("data") };
    zef::TrashRefusal refusal;
};
