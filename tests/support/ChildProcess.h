// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/// Runs `work` in a child process, for what would spoil the test's own: mounts, limits, a current
/// folder that is gone.
///
/// `work` uses GoogleTest's EXPECT, ASSERT and GTEST_SKIP as a test does: each failure is one of
/// this test, at its own line, and a skip skips this test. A child process that throws, is killed
/// or exits by itself with another status than 0 fails the test as well.
void runInChildProcess(const std::function<void()>& work);
