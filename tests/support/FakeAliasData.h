// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"
#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include <cstring>
#include <utility>

/// Alias data that hold the reference as it is and lead where a test says; stand in for the shared
/// ones while they live.
class FakeAliasData final : public zef::AliasData {
public:
    FakeAliasData() { replaceShared(this); }
    ~FakeAliasData() override { replaceShared(nullptr); }
    FakeAliasData(const FakeAliasData&) = delete;
    FakeAliasData& operator=(const FakeAliasData&) = delete;

    /// What `make` says from now on; 0 makes bytes.
    void setMakeResult(zef::FileError result) { _makeResult = result; }
    /// What `resolve` says from now on; with 0 it tells `place`.
    void setResolveResult(zef::FileError result, zef::FileURL place = nullptr)
    {
        _resolveResult = result;
        _place = std::move(place);
    }

    int resolveCount() const { return _resolveCount; }

    zef::FileError make(const zef::FSRef& ref, const zef::FileURL&, Bytes& bytes) override
    {
        if (_makeResult != zef::FileError::none)
            return _makeResult;
        bytes.resize(sizeof ref);
        std::memcpy(bytes.data(), &ref, sizeof ref);
        return zef::FileError::none;
    }

    zef::FileError resolve(const Bytes& bytes, zef::FSRef& ref, zef::FileURL& url) override
    {
        ++_resolveCount;
        if (_resolveResult != zef::FileError::none)
            return _resolveResult;
        if (bytes.size() == sizeof ref)
            std::memcpy(static_cast<void*>(&ref), bytes.data(), sizeof ref);
        url = _place;
        return zef::FileError::none;
    }

private:
    zef::FileError _makeResult = zef::FileError::none;
    zef::FileError _resolveResult = zef::FileError::notFound;
    zef::FileURL _place;
    int _resolveCount = 0;
};
