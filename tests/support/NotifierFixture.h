// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Notifier/InotifyNotifier.h"

#include "tests/support/FakeLocator.h"
#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string_view>
#include <system_error>

/// A notifier of the test's own on real files, and a locator that says what the test sets. The
/// clock stands still years before the files' time stamps, so that these count as settled.
class NotifierFixture : public testing::Test {
protected:
    NotifierFixture() { zef::Clock::replaceShared(&clock); }
    ~NotifierFixture() override { zef::Clock::replaceShared(nullptr); }

    zef::Stat stat(std::string_view name) const
    {
        zef::Stat result;
        const int error = zef::FileSystem::system().statLink(folder.path(name).c_str(), result);
        if (error)
            throw std::system_error(error, std::generic_category(), folder.path(name));
        return result;
    }

    zef::FSRef ref(std::string_view name) const { return zef::FSRef(stat(name)); }

    /// A token, and what its owner knows of the object.
    struct Watched {
        int token;
        zef::FSRef ref;
        zef::FileURL url;
    };

    /// Opens a token on what has this name now.
    Watched open(std::string_view name) { return open(ref(name), folder.url(name)); }
    Watched open(const zef::FSRef& ref, const zef::FileURL& url)
    {
        return { notifier.open(ref, url), ref, url };
    }

    int poll(const Watched& watched)
    {
        return notifier.poll(watched.token, watched.ref, watched.url);
    }

    /// Opens a token by events and polls it once, which verifies the watch.
    Watched openVerified(std::string_view name)
    {
        auto watched = open(name);
        EXPECT_EQ(poll(watched), 0);
        EXPECT_FALSE(notifier.comparesStamps(watched.token));
        return watched;
    }

    /// Opens a token that compares stamps, and no others from now on.
    Watched openByStamps(std::string_view name)
    {
        notifier.setWatchLimit(0);
        auto watched = open(name);
        EXPECT_TRUE(notifier.comparesStamps(watched.token));
        return watched;
    }

    TemporaryFolder folder;
    SteppedClock clock;
    FakeLocator locator;
    zef::InotifyNotifier notifier;
};
