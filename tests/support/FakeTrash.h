// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Trash/Trash.h"

#include <span>
#include <vector>

/// Replaces the shared trash while it lives: remembers the requests and moves nothing.
class FakeTrash final : public zef::Trash {
public:
    FakeTrash() { replaceShared(this); }
    ~FakeTrash() override { replaceShared(nullptr); }
    FakeTrash(const FakeTrash&) = delete;
    FakeTrash& operator=(const FakeTrash&) = delete;

    zef::TrashOutcome moveToTrash(
        std::span<const zef::TrashEntry> entries, zef::TrashRefusal& refusal) override
    {
        requests.emplace_back(entries.begin(), entries.end());
        refusal = answer;
        return outcome;
    }

    std::vector<std::vector<zef::TrashEntry>> requests;
    zef::TrashOutcome outcome = zef::TrashOutcome::moved;
    zef::TrashRefusal answer;
};
