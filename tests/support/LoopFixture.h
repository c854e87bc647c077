// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Loading/ZEFLoadingOperation.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tests/support/Gate.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/RecordingSubscriber.h"
#include "tests/support/SpyCatalog.h"
#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ZEFFileManagerTestAccess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string_view>
#include <vector>

/// The folders "watched" and "elsewhere", a clock and a run loop that the test steps, and a file
/// manager of the test's own if it uses one. At the end the log must be empty, except for lines
/// about inode numbers that were used again.
class LoopFixture : public testing::Test {
protected:
    LoopFixture();
    ~LoopFixture() override;

    /// Lets time pass and does what has fallen due.
    void step(double seconds);

    /// The item of what has this name; of the class that reports.
    zef::Ref<ZEFFileItem> item(std::string_view name) const;

    /// A new subscriber, which lives as long as the test.
    RecordingSubscriber& newSubscriber();

    /// Empty files in a folder, named "000", "001", ...
    void writeFiles(std::size_t count, std::string_view inFolder = "watched");

    /// Writes to the file until its time stamps show it.
    void writeVisibly(std::string_view name);

    /// From now on other threads that list a folder wait at the gate before each batch.
    void holdReaders();

    static constexpr double never = std::numeric_limits<double>::infinity();

    static Words names(const zef::Ref<ZEFFileItemArray>& items);

    TemporaryFolder folder;
    SteppedClock clock;
    zef::RunLoop loop{ clock };
    LogRecorder log;
    SpyCatalog catalog;
    Gate gate;

private:
    std::vector<zef::Ref<RecordingSubscriber>> _subscribers;
    // A file that is moved there can be found without a descriptor.
    zef::Ref<ZEFFileItem> _elsewhere;
};
