// SPDX-License-Identifier: MIT
#pragma once

#include "tests/stress/Meddler.h"
#include "tests/stress/WatchedFolder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

/// A tree of folders, another process that changes them, and subscriptions to some of them.
class StressFixture : public testing::Test {
protected:
    StressFixture();
    ~StressFixture() override;

    /// Seconds that one test may take: the environment variable ZEF_STRESS_SECONDS, or 5.
    static double secondsToRun();
    /// The first seed: the environment variable ZEF_STRESS_SEED, or 1.
    static std::uint64_t firstSeed();

    /// Makes the tree anew.
    void makeTree();

    /// Subscribes to a top folder that is not watched yet, as long as fewer than three are.
    void watchSomeFolders();

    /// Lists every watched folder on other threads, at the same time as whatever the test does.
    void loadInBackground();

    /// One poll as the file manager does it.
    void poll();

    /// Polls while nobody changes anything, and compares with the disk.
    void pollAndCompare();

    TemporaryFolder _folder;
    std::string _root = _folder.path("root");
    std::unique_ptr<Meddler> _meddler;
    std::vector<zef::Ref<WatchedFolder>> _watched;
    zef::Ref<zef::OperationQueue> _queue = zef::makeRef<zef::OperationQueue>();
};
