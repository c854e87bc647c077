// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/AliasData/AliasData.h"

#include <cstring>
#include <utility>

/// Alias data that hold the reference as it is and lead where the test says. Replaces the shared
/// service while it lives.
class FakeAliasData final : public zef::AliasData {
public:
    FakeAliasData() { replaceShared(this); }
    ~FakeAliasData() override { replaceShared(nullptr); }
    FakeAliasData(const FakeAliasData&) = delete;
    FakeAliasData& operator=(const FakeAliasData&) = delete;

    /// What `make` returns from now on; `FileError::none` makes bytes.
    void setMakeResult(zef::FileError result) { _makeResult = result; }
    /// What `resolve` returns from now on; `FileError::none` leads to `place`.
    void setResolveResult(zef::FileError result, zef::FileURL place = nullptr)
    {
        _resolveResult = result;
        _place = std::move(place);
    }

    int resolveCount() const { return _resolveCount; }

    zef::Expected<Bytes> make(const zef::FSRef& ref, const zef::FileURL&) override
    {
        if (_makeResult != zef::FileError::none)
            return _makeResult;
        Bytes bytes(sizeof ref);
        std::memcpy(bytes.data(), &ref, sizeof ref);
        return bytes;
    }

    zef::Expected<Target> resolve(const Bytes& bytes) override
    {
        ++_resolveCount;
        if (_resolveResult != zef::FileError::none)
            return _resolveResult;
        Target target{ {}, _place };
        if (bytes.size() == sizeof target.ref)
            std::memcpy(static_cast<void*>(&target.ref), bytes.data(), sizeof target.ref);
        return target;
    }

private:
    zef::FileError _makeResult = zef::FileError::none;
    zef::FileError _resolveResult = zef::FileError::notFound;
    zef::FileURL _place;
    int _resolveCount = 0;
};
