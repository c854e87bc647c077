// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <system_error>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

/// Makes the calling thread respect permissions like any user's while this lives, even root's;
/// other threads are not affected (capabilities(7)). access(2) goes by the real user and is not
/// fooled.
class WithoutPrivileges {
public:
    WithoutPrivileges()
    {
        require(::syscall(SYS_capget, &_header, _former));
        __user_cap_data_struct none[2] = { _former[0], _former[1] };
        none[0].effective = 0;
        none[1].effective = 0;
        require(::syscall(SYS_capset, &_header, none));
    }

    ~WithoutPrivileges() { ::syscall(SYS_capset, &_header, _former); }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    static void require(long result)
    {
        if (result != 0)
            throw std::system_error(errno, std::generic_category(), "capabilities");
    }

    __user_cap_header_struct _header{ _LINUX_CAPABILITY_VERSION_3, 0 };
    __user_cap_data_struct _former[2] = {};
};
