// SPDX-License-Identifier: MIT
#include "tests/stress/StressFixture.h"
#include "tests/support/FewDescriptors.h"

#include <string>

namespace {

// The undefined-behaviour sanitizer makes a pipe to look at an object, and calls it an error when
// it can't.
#if defined(__has_feature)
#if __has_feature(undefined_behavior_sanitizer)
#define ZEF_STRESS_NEEDS_PIPE
#endif
#endif
#ifdef ZEF_STRESS_NEEDS_PIPE
constexpr int descriptorsLeft = 2;
#else
constexpr int descriptorsLeft = 0;
#endif

class ShortageTest : public StressFixture {
protected:
    ShortageTest()
    {
        makeTree();
        watchSomeFolders();
        pollAndCompare();
    }

    std::string folderOf(std::size_t index)
    {
        return _watched.at(index)->subscription().url().path().substr(_folder.path().size() + 1);
    }
};

TEST_F(ShortageTest, AnOverflownQueueHidesNoChangeOfAnyFolder)
{
    for (int number = 0; number < 20000; ++number)
        _folder.write(folderOf(0) + "/many" + std::to_string(number), "");
    _folder.write(folderOf(1) + "/one", "");
    pollAndCompare();

    EXPECT_TRUE(_watched.at(1)->sawFolderChange());
}

TEST_F(ShortageTest, ChangesAreFoundWhenTheProgramGoesOnAfterItWasStopped)
{
    for (std::uint64_t seed = firstSeed(); seed < firstSeed() + 20 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        _meddler->doWhileStopped(seed, 50);
        pollAndCompare();
        watchSomeFolders();
        pollAndCompare();
    }
}

TEST_F(ShortageTest, ChangesMadeWhileNoDescriptorIsLeftAreFoundWhenThereAreAgain)
{
    for (std::uint64_t seed = firstSeed(); seed < firstSeed() + 20 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        {
            const FewDescriptors none(descriptorsLeft);
            for (int round = 0; round < 3; ++round) {
                _meddler->begin(seed * 10 + static_cast<std::uint64_t>(round), 15);
                _meddler->finish();
                poll();
            }
        }
        pollAndCompare();
        watchSomeFolders();
        pollAndCompare();
    }
}

} // namespace
