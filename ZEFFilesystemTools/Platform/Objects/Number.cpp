// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Objects/Number.h"

namespace zef {

const Class Number::classObject{ "Number", &ZEFObject::classObject };

bool Number::isEqual(const ZEFObject* other) const
{
    const auto* number = downcast<Number>(other);
    return number && number->_value == _value;
}

} // namespace zef
