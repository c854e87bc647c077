// SPDX-License-Identifier: MIT
#include "tests/support/AllocationCounter.h"

#include <cstdlib>
#include <new>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ZEF_HEAP_IS_SANITIZED 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZEF_HEAP_IS_SANITIZED 1
#endif

namespace {

thread_local std::size_t allocationCount = 0;

} // namespace

#ifdef ZEF_HEAP_IS_SANITIZED

bool AllocationCounter::isAvailable()
{
    return false;
}

#else

bool AllocationCounter::isAvailable()
{
    return true;
}

void* operator new(std::size_t size)
{
    ++allocationCount;
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

#endif

AllocationCounter::AllocationCounter()
    : _countBefore(allocationCount)
{
}

std::size_t AllocationCounter::count() const
{
    return allocationCount - _countBefore;
}
