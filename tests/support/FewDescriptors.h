// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include <sys/resource.h>
#include <unistd.h>

/// Limits how many more descriptors the process gets while this lives; then it gets EMFILE. Open
/// ones stay open. Two are enough for UndefinedBehaviorSanitizer, which makes a pipe to look at an
/// object.
class FewDescriptors {
public:
    explicit FewDescriptors(int count)
    {
        getrlimit(RLIMIT_NOFILE, &_limit);
        auto lowered = _limit;
        lowered.rlim_cur = static_cast<rlim_t>(lowestAfter(count));
        setrlimit(RLIMIT_NOFILE, &lowered);
    }

    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &_limit); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

private:
    // The lowest number that is free when the `count` lower free ones are taken.
    static int lowestAfter(int count)
    {
        std::vector<int> taken;
        for (int index = 0; index <= count; ++index)
            taken.push_back(dup(STDERR_FILENO));
        for (const auto descriptor : taken)
            close(descriptor);
        return taken.back();
    }

    rlimit _limit{};
};
