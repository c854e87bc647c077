// SPDX-License-Identifier: MIT
#include "tests/support/AliasFixture.h"

#include "ZEFFilesystemTools/Platform/AliasData/LinuxAliasData.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/LocatorFixture.h"
#include "tests/support/WithoutPrivileges.h"

#include <system_error>

class AliasFixture::Privileges : public WithoutPrivileges { };

AliasFixture::AliasFixture()
    : folder(GetParam().place)
{
    if (!GetParam().keepsPrivileges)
        _privileges = std::make_unique<Privileges>();
}

AliasFixture::~AliasFixture() = default;

zef::AliasData::Bytes AliasFixture::aliasOf(const zef::FileURL& url)
{
    zef::AliasData::Bytes bytes;
    EXPECT_EQ(zef::LinuxAliasData().make(zef::FSRef(stat(url)), url, bytes), zef::FileError::none)
        << url.path();
    return bytes;
}

zef::FileURL AliasFixture::resolve(const zef::AliasData::Bytes& bytes)
{
    zef::FSRef ref;
    zef::FileURL url;
    return zef::LinuxAliasData().resolve(bytes, ref, url) == zef::FileError::none ? url : nullptr;
}

zef::FSRef AliasFixture::resolvedRef(const zef::AliasData::Bytes& bytes)
{
    zef::FSRef ref;
    zef::FileURL url;
    std::ignore = zef::LinuxAliasData().resolve(bytes, ref, url);
    return ref;
}

zef::FileError AliasFixture::resultOf(const zef::AliasData::Bytes& bytes)
{
    zef::FSRef ref;
    zef::FileURL url;
    return zef::LinuxAliasData().resolve(bytes, ref, url);
}

zef::Stat AliasFixture::stat(const zef::FileURL& url)
{
    zef::Stat result;
    const int error = zef::FileSystem::system().statLink(url.path().c_str(), result);
    if (error)
        throw std::system_error(error, std::generic_category(), url.path());
    return result;
}

std::vector<AliasCircumstance> aliasCircumstances()
{
    std::vector<AliasCircumstance> all;
    for (const auto& circumstance : locatorCircumstances())
        all.push_back({ circumstance.place, circumstance.mayHold });
    return all;
}

std::string nameOfAliasCircumstance(const testing::TestParamInfo<AliasCircumstance>& info)
{
    return std::string(info.index > 1 ? "InMemory" : "InUsualPlace")
        + (info.param.keepsPrivileges ? "" : "WithoutPrivileges");
}
