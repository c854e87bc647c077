// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Locator/LinuxLocator.h"

#include "tests/support/Privileges.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Where a locator is tested, and with what budget of descriptors.
struct LocatorCircumstance {
    std::string place;
    bool mayHold;
};

/// A locator of its own on real files, on the disk and in memory, with descriptors and without.
class LocatorFixture : public testing::TestWithParam<LocatorCircumstance> {
protected:
    LocatorFixture();
    ~LocatorFixture() override;

    /// An object that the locator retains until the end of the test.
    struct Tracked {
        zef::FSRef ref;
        zef::FileURL url;
    };

    static zef::Stat stat(const zef::FileURL&);
    /// A reference to what is at the URL now, not retained.
    static zef::FSRef ref(const zef::FileURL&);
    Tracked track(const zef::FileURL&);
    zef::FileURL locate(const Tracked& tracked) { return locate(tracked.ref, tracked.url); }
    zef::FileURL locate(const zef::FSRef&, const zef::FileURL&);

    bool mayHold() const { return GetParam().mayHold; }
    /// Whether an object is found wherever on its volume it was moved.
    bool findsEverything() const { return mayHold() || mayOpenByHandle(folder.path()); }

    TemporaryFolder folder;
    zef::LinuxLocator locator;

private:
    std::vector<Tracked> _tracked;
};

/// The circumstances that can be had here.
std::vector<LocatorCircumstance> locatorCircumstances();
std::string nameOfCircumstance(const testing::TestParamInfo<LocatorCircumstance>&);
