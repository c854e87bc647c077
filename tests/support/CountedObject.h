// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <atomic>
#include <functional>
#include <utility>

/// An object that counts how many of its kind are alive, and calls a function when it dies.
class CountedObject : public ZEFObject {
public:
    inline static constexpr zef::Class classObject{ "CountedObject", &ZEFObject::classObject };
    const zef::Class& objectClass() const override { return classObject; }

    explicit CountedObject(std::function<void(CountedObject&)> atDealloc = nullptr)
        : _atDealloc(std::move(atDealloc))
    {
        ++_liveCount;
    }

    static int liveCount() { return _liveCount; }

    using ZEFObject::makeImmortal;

protected:
    ~CountedObject() override { --_liveCount; }

    void dealloc() noexcept override
    {
        if (_atDealloc)
            _atDealloc(*this);
        ZEFObject::dealloc();
    }

private:
    inline static std::atomic<int> _liveCount{ 0 };

    std::function<void(CountedObject&)> _atDealloc;
};
