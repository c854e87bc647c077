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
    auto bytes = zef::LinuxAliasData().make(zef::FSRef(stat(url)), url);
    EXPECT_TRUE(bytes) << url.path() << ": " << numberOf(bytes.error());
    return bytes ? *std::move(bytes) : zef::AliasData::Bytes();
}

zef::FileURL AliasFixture::resolve(const zef::AliasData::Bytes& bytes)
{
    const auto target = zef::LinuxAliasData().resolve(bytes);
    return target ? target->url : nullptr;
}

zef::FSRef AliasFixture::resolvedRef(const zef::AliasData::Bytes& bytes)
{
    const auto target = zef::LinuxAliasData().resolve(bytes);
    return target ? target->ref : zef::FSRef();
}

zef::FileError AliasFixture::resultOf(const zef::AliasData::Bytes& bytes)
{
    return zef::LinuxAliasData().resolve(bytes).error();
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
