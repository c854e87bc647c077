// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Objects/LetOutlive.h"

// Present only in a program that was built with the leak checker.
// NOLINTNEXTLINE(readability-identifier-naming): the name is the run-time library's
extern "C" __attribute__((weak)) void __lsan_ignore_object(const void*);

namespace zef {

void letOutlive(const ZEFObject* object, [[maybe_unused]] const char* why)
{
    if (!object)
        return;
    object->retain();
    if (__lsan_ignore_object)
        __lsan_ignore_object(object);
}

} // namespace zef
