// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/OperationQueue.h"

#include <cerrno>
#include <vector>

#include <sched.h>

namespace zef {

std::size_t onlineProcessorCount()
{
    constexpr std::size_t processorsPerSet = 8 * sizeof(cpu_set_t);
    std::vector<cpu_set_t> mask(1);
    // EINVAL: the kernel's mask is longer than ours.
    while (sched_getaffinity(0, mask.size() * sizeof(cpu_set_t), mask.data())) {
        if (errno != EINVAL || mask.size() * processorsPerSet > 1 << 20)
            return 1;
        mask = std::vector<cpu_set_t>(mask.size() * 2);
    }
    const auto count = CPU_COUNT_S(mask.size() * sizeof(cpu_set_t), mask.data());
    return count > 0 ? static_cast<std::size_t>(count) : 1;
}

} // namespace zef
