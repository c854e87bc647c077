// SPDX-License-Identifier: MIT
#include "tests/support/LocatorFixture.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include <cstdlib>
#include <system_error>

#include <unistd.h>

namespace {

constexpr const char* memoryFolder = "/dev/shm";

std::string usualFolder()
{
    const char* place = std::getenv("ZEF_TEST_FOLDER");
    return place && *place ? place : "/tmp";
}

} // namespace

LocatorFixture::LocatorFixture()
    : folder(GetParam().place)
{
    // The tests' folder may well lie on a mount that is taken for a removable volume.
    locator.setDescriptorPolicy(zef::DescriptorPolicy::always);
    if (!mayHold())
        locator.setDescriptorBudget(0);
}

LocatorFixture::~LocatorFixture()
{
    for (const auto& tracked : _tracked)
        locator.release(tracked.ref);
    EXPECT_EQ(locator.heldDescriptorCount(), 0u);
}

zef::Stat LocatorFixture::stat(const zef::FileURL& url)
{
    zef::Stat result;
    const int error = zef::FileSystem::system().statLink(url.path().c_str(), result);
    if (error)
        throw std::system_error(error, std::generic_category(), url.path());
    return result;
}

zef::FSRef LocatorFixture::ref(const zef::FileURL& url)
{
    return zef::FSRef(stat(url));
}

LocatorFixture::Tracked LocatorFixture::track(const zef::FileURL& url)
{
    Tracked tracked{ ref(url), url };
    locator.retain(tracked.ref, url);
    _tracked.push_back(tracked);
    return tracked;
}

zef::FileURL LocatorFixture::locate(const zef::FSRef& ref, const zef::FileURL& lastKnown)
{
    return locator.locate(ref, lastKnown);
}

std::vector<LocatorCircumstance> locatorCircumstances()
{
    std::vector<LocatorCircumstance> all{ { usualFolder(), true }, { usualFolder(), false } };
    if (!usualFolder().starts_with(memoryFolder) && ::access(memoryFolder, W_OK) == 0) {
        all.push_back({ memoryFolder, true });
        all.push_back({ memoryFolder, false });
    }
    return all;
}

std::string nameOfCircumstance(const testing::TestParamInfo<LocatorCircumstance>& info)
{
    const bool inMemory = info.index > 1;
    return std::string(inMemory ? "InMemory" : "InUsualPlace")
        + (info.param.mayHold ? "Holding" : "HoldingNothing");
}
