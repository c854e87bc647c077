// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tests/support/ZefProcess.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

/// A folder "w" and a running `zef watch` that polls it all the time.
class WatchFixture : public testing::Test {
protected:
    WatchFixture() { folder.makeFolder("w"); }

    /// Starts `zef watch` with these arguments, the folders among them.
    void start(std::vector<std::string> arguments, const ZefProcess::Settings& settings = {})
    {
        arguments.insert(arguments.begin(), { "watch", "--interval", "0.02" });
        process = std::make_unique<ZefProcess>(arguments, settings);
    }

    /// Watches `w` and waits for the line that says so.
    void watch(const ZefProcess::Settings& settings = {})
    {
        start({ folder.path("w") }, settings);
        ASSERT_TRUE(process->lineWith("Watching "));
    }

    /// The next line that begins with this event; empty when the output has ended.
    std::string nextChange(const std::string& event)
    {
        auto line = process->nextLine();
        while (line && line->rfind(event + "  ", 0) != 0)
            line = process->nextLine();
        return line.value_or("");
    }

    TemporaryFolder folder;
    std::unique_ptr<ZefProcess> process;
};
