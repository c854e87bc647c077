// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/PrivateMounts.h"
#include "tests/support/TrashFixture.h"

#include <functional>
#include <string>

#include <unistd.h>

/// A volume mounted at "volume", beside the home trash's, and a folder "other" for a second one.
/// Each test works in a child process with mounts of its own.
class TrashVolumesFixture : public TrashFixture {
protected:
    using Mounts = PrivateMounts&;

    TrashVolumesFixture()
    {
        folder.makeFolder("volume");
        folder.makeFolder("other");
    }

    void run(const std::function<void(Mounts)>& work)
    {
        runWithVolume(folder.path("volume"), work);
    }

    /// Makes the folder with this mode, whatever the process's mask takes away.
    void makeFolder(const std::string& name, mode_t mode)
    {
        folder.makeFolder(name);
        folder.chmod(name, mode);
    }

    void expectMoved(const Names& names)
    {
        EXPECT_EQ(trash(names), zef::TrashOutcome::moved) << refusal.reason;
    }

    /// The last file is the one that stands in the way, and the first one stays.
    void expectRefused(const Names& names, int error)
    {
        EXPECT_EQ(trash(names), zef::TrashOutcome::refused) << refusal.reason;
        EXPECT_EQ(refusal.error, error) << refusal.reason;
        EXPECT_EQ(refusal.index, names.size() - 1);
        EXPECT_TRUE(folder.exists(names.front()));
    }

    /// The name of a user's own trash on a volume.
    const std::string own = ".Trash-" + std::to_string(::geteuid());
    /// That trash on the volume.
    const std::string ownTrash = "volume/" + own;
    /// The user's trash in the administrator's folder on the volume.
    const std::string sharedTrash = "volume/.Trash/" + std::to_string(::geteuid());
};
