// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Threads/Operation.h"

#include <functional>
#include <utility>

/// An operation whose work is a function that the test gives it.
class BlockOperation final : public zef::Operation {
public:
    explicit BlockOperation(std::function<void(BlockOperation&)> block)
        : _block(std::move(block))
    {
    }

    explicit BlockOperation(std::function<void()> block)
        : _block([block = std::move(block)](BlockOperation&) { block(); })
    {
    }

protected:
    void main() override { _block(*this); }

private:
    std::function<void(BlockOperation&)> _block;
};
