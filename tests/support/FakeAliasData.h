// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"

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
    void setMakeResult(std::int16_t result) { _makeResult = result; }
    /// What `resolve` says from now on; with 0 it tells `place`.
    void setResolveResult(std::int16_t result, zef::FileURL place = nullptr)
    {
        _resolveResult = result;
        _place = std::move(place);
    }

    int resolveCount() const { return _resolveCount; }

    std::int16_t make(const zef::FSRef& ref, const zef::FileURL&, Bytes& bytes) override
    {
        if (_makeResult)
            return _makeResult;
        bytes.resize(sizeof ref);
        std::memcpy(bytes.data(), &ref, sizeof ref);
        return 0;
    }

    std::int16_t resolve(const Bytes& bytes, zef::FSRef& ref, zef::FileURL& url) override
    {
        ++_resolveCount;
        if (_resolveResult)
            return _resolveResult;
        if (bytes.size() == sizeof ref)
            std::memcpy(static_cast<void*>(&ref), bytes.data(), sizeof ref);
        url = _place;
        return 0;
    }

private:
    std::int16_t _makeResult = 0;
    std::int16_t _resolveResult = -43;
    zef::FileURL _place;
    int _resolveCount = 0;
};
