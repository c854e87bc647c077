// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/LinuxLocator.h"

#include "tests/support/TemporaryFolder.h"

/// A locator that may hold descriptors on any volume, and a folder for what it tracks. Not a
/// fixture, because a fixture has virtual functions: see LocatorShortageTest.
struct HoldingLocator {
    HoldingLocator() { locator.setDescriptorPolicy(zef::DescriptorPolicy::always); }

    /// An object that the locator retains.
    struct Tracked {
        zef::FSRef ref;
        zef::FileURL url;
    };

    /// A reference to what is at the URL now, not retained.
    static zef::FSRef ref(const zef::FileURL& url)
    {
        zef::Stat stat;
        zef::FileSystem::system().statLink(url.path().c_str(), stat);
        return zef::FSRef(stat);
    }

    Tracked track(const zef::FileURL& url)
    {
        Tracked tracked{ ref(url), url };
        locator.retain(tracked.ref, url);
        return tracked;
    }

    TemporaryFolder folder;
    zef::LinuxLocator locator;
};
