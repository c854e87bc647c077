// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/DescriptorReserve.h"

#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace zef {
namespace {

// Other threads may be quicker to take what was given back.
constexpr int mostDescriptorsGivenBack = 8;

// What the outermost caller sees is the reason for its own failure, not for that of tidying up.
class ErrnoKeeper {
public:
    ErrnoKeeper() = default;
    ~ErrnoKeeper() { errno = _saved; }
    ErrnoKeeper(const ErrnoKeeper&) = delete;
    ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;

private:
    int _saved = errno;
};

bool isOutOfDescriptors(int result)
{
    return result < 0 && (errno == EMFILE || errno == ENFILE);
}

// An event counter, because it belongs to no file system that somebody may want to unmount.
int openSpare()
{
    return ::eventfd(0, EFD_CLOEXEC);
}

} // namespace

DescriptorReserve& DescriptorReserve::shared()
{
    return immortal<DescriptorReserve>();
}

DescriptorReserve::DescriptorReserve()
    : _spare(openSpare())
{
}

DescriptorReserve::~DescriptorReserve()
{
    giveUpSpare();
}

int DescriptorReserve::openAt(int folder, const char* path, int flags)
{
    const auto open = [&] { return ::openat(folder, path, flags | O_CLOEXEC); };
    int result = open();
    for (int tries = 0; isOutOfDescriptors(result) && tries < mostDescriptorsGivenBack; ++tries) {
        if (!makeRoom())
            break;
        result = open();
    }
    if (isOutOfDescriptors(result) && giveUpSpare())
        result = open();
    return result;
}

void DescriptorReserve::close(int descriptor)
{
    if (descriptor < 0)
        return;
    ErrnoKeeper keeper;
    ::close(descriptor);
    refill();
}

void DescriptorReserve::refill()
{
    if (isFilled())
        return;
    ErrnoKeeper keeper;
    std::lock_guard lock(_refillMutex);
    if (!isFilled())
        _spare = openSpare();
}

bool DescriptorReserve::makeRoom()
{
    const auto giver = _giver.load(std::memory_order_relaxed);
    return giver && giver();
}

bool DescriptorReserve::giveUpSpare()
{
    ErrnoKeeper keeper;
    const int spare = _spare.exchange(-1);
    return spare >= 0 && ::close(spare) == 0;
}

} // namespace zef
