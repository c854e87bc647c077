// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

namespace zef {

/// A whole number as an object; equal to every other one with the same value. Immutable.
class ZEF_EXPORT Number final : public ZEFObject {
public:
    static const Class classObject;
    const Class& objectClass() const override { return classObject; }

    explicit Number(int value)
        : _value(value)
    {
    }

    int intValue() const { return _value; }

    bool isEqual(const ZEFObject* other) const override;
    std::size_t hash() const override { return static_cast<std::size_t>(_value); }
    std::string description() const override { return std::to_string(_value); }

private:
    int _value;
};

} // namespace zef
