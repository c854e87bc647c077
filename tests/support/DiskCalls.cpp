// SPDX-License-Identifier: MIT
#include "tests/support/DiskCalls.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <utility>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

DiskCalls* current = nullptr;

std::string nameOf(int descriptor)
{
    std::error_code error;
    const auto link = "/proc/self/fd/" + std::to_string(descriptor);
    return std::filesystem::read_symlink(link, error).filename();
}

int end(int error)
{
    if (!error)
        return 0;
    errno = error;
    return -1;
}

} // namespace

DiskCalls::DiskCalls()
{
    current = this;
}

DiskCalls::~DiskCalls()
{
    current = nullptr;
}

std::optional<int> DiskCalls::note(std::string call)
{
    if (!current)
        return std::nullopt;
    const auto& text = current->calls.emplace_back(std::move(call));
    return current->answer ? current->answer(text) : std::nullopt;
}

// The linker takes these for the C library's.

extern "C" int fsync(int descriptor)
{
    if (const auto answer = DiskCalls::note("fsync " + nameOf(descriptor)))
        return end(*answer);
    return static_cast<int>(::syscall(SYS_fsync, descriptor));
}

extern "C" int syncfs(int descriptor) noexcept
{
    if (const auto answer = DiskCalls::note("syncfs " + nameOf(descriptor)))
        return end(*answer);
    return static_cast<int>(::syscall(SYS_syncfs, descriptor));
}

extern "C" int renameat2(
    int from, const char* name, int to, const char* newName, unsigned flags) noexcept
{
    if (const auto answer = DiskCalls::note("move " + std::string(name)))
        return end(*answer);
    return static_cast<int>(::syscall(SYS_renameat2, from, name, to, newName, flags));
}
