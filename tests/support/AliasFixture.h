// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Where alias data are tested, and whether handles are used if the process may open them.
struct AliasCircumstance {
    std::string place;
    bool keepsPrivileges;
};

/// Alias data of real files, on the disk and in memory. What makes them and what resolves them
/// knows nothing of each other, as in two runs of a program.
class AliasFixture : public testing::TestWithParam<AliasCircumstance> {
protected:
    AliasFixture();
    ~AliasFixture() override;

    zef::AliasData::Bytes aliasOf(const zef::FileURL&);
    zef::AliasData::Bytes aliasOf(std::string_view name) { return aliasOf(folder.url(name)); }

    /// Where the object is that `bytes` lead to; null if `resolve` fails.
    zef::FileURL resolve(const zef::AliasData::Bytes& bytes);
    /// The reference to it.
    zef::FSRef resolvedRef(const zef::AliasData::Bytes& bytes);
    zef::FileError resultOf(const zef::AliasData::Bytes& bytes);

    static zef::Stat stat(const zef::FileURL&);

    TemporaryFolder folder;

private:
    class Privileges;
    std::unique_ptr<Privileges> _privileges;
};

std::vector<AliasCircumstance> aliasCircumstances();
std::string nameOfAliasCircumstance(const testing::TestParamInfo<AliasCircumstance>&);
