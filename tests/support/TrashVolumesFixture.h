// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Trash/Trash.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/PrivateMounts.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include <unistd.h>

/// A volume mounted at "volume", beside the home trash's. Each test works with mounts of its own in
/// a child process, which says how it went.
class TrashVolumesFixture : public testing::Test {
protected:
    using Mounts = PrivateMounts&;

    static constexpr int passed = 0;
    static constexpr int failed = 1;
    static constexpr int impossible = 2;

    TrashVolumesFixture()
    {
        folder.makeFolder("volume");
        folder.makeFolder("other");
    }

    void run(const std::function<bool(Mounts)>& work)
    {
        const int result = resultInChildProcess([&] {
            PrivateMounts mounts;
            if (!mounts || !mounts.mountMemory(path("volume")))
                return impossible;
            const bool isGood = work(mounts);
            if (!isGood)
                std::cerr << "refused because of: " << refusal.reason << '\n';
            return isGood ? passed : failed;
        });
        if (result == impossible)
            GTEST_SKIP() << "no mounts to be had";
        EXPECT_EQ(result, passed);
    }

    std::string path(const std::string& name) const { return folder.path(name); }

    std::string volume(const std::string& name) const { return path("volume/" + name); }

    static void write(const std::string& path, const std::string& text = "text")
    {
        std::ofstream(path) << text;
    }

    static bool exists(const std::string& path)
    {
        return std::filesystem::exists(std::filesystem::symlink_status(path));
    }

    zef::TrashOutcome trash(const std::vector<std::string>& paths)
    {
        std::vector<zef::TrashEntry> entries;
        for (const auto& each : paths) {
            zef::Stat stat;
            zef::FileSystem::system().statLink(each.c_str(), stat);
            entries.push_back(
                { zef::FSRef(stat), zef::FileURL::fromPath(each, zef::URLKind::file) });
        }
        return zef::Trash::system().moveToTrash(entries, refusal);
    }

    bool isRefused(const std::vector<std::string>& paths, int error)
    {
        return trash(paths) == zef::TrashOutcome::refused && refusal.error == error
            && refusal.index == paths.size() - 1 && exists(paths.front());
    }

    /// Whether the record in a volume's trash has this path.
    bool isRecorded(const std::string& trash, const std::string& name, const std::string& original)
    {
        std::ifstream file(volume(trash + "/info/" + name + ".trashinfo"));
        std::string line;
        return std::getline(file, line) && line == "[Trash Info]" && std::getline(file, line)
            && line == "Path=" + original;
    }

    TemporaryFolder folder;
    EnvironmentVariable dataHome{ "XDG_DATA_HOME", folder.path("data") };
    zef::TrashRefusal refusal;
    /// The name of a user's own trash on a volume.
    const std::string own = ".Trash-" + std::to_string(::geteuid());
    /// What the administrator's folder holds for the user.
    const std::string shared = ".Trash/" + std::to_string(::geteuid());
};
