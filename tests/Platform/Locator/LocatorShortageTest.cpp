// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/LinuxLocator.h"

#include "tests/support/FewDescriptors.h"
#include "tests/support/HoldingLocator.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

namespace {

// No fixture: UndefinedBehaviorSanitizer looks at each object of a class with virtual functions by
// a pipe when it first meets it, and here no descriptor is left for one.
struct Scene : HoldingLocator {
    Scene()
    {
        zef::Locator::replaceShared(&locator);
        meetAllObjects();
    }
    ~Scene() { zef::Locator::replaceShared(nullptr); }

    // Does once what the tests do: holds an object, and looks for another one in its folder.
    void meetAllObjects()
    {
        const WithoutPrivileges none;
        zef::LinuxLocator other;
        const auto url = folder.write("first");
        auto file = ref(url);
        other.retain(file, url);
        other.release(file);
        folder.rename("first", "last");
        other.locate(file, url);
        zef::Locator::shared().giveBackOneDescriptor();
    }
};

TEST(LocatorShortageTest, CompletesAReferenceWithoutADescriptorLeft)
{
    Scene scene;
    const auto url = scene.folder.write("file");
    auto file = Scene::ref(url);
    const FewDescriptors none(0);
    scene.locator.retain(file, url);

    EXPECT_EQ(scene.locator.heldDescriptorCount(), 0u);
    EXPECT_TRUE(file.hasHandle());
    EXPECT_NE(file.parentInode(), 0u);
}

TEST(LocatorShortageTest, LooksForAnObjectWithoutADescriptorLeft)
{
    Scene scene;
    scene.locator.setDescriptorBudget(0);
    const auto file = scene.track(scene.folder.write("before"));
    const auto renamed = scene.folder.rename("before", "after");
    const FewDescriptors none(0);

    EXPECT_EQ(scene.locator.locate(file.ref, file.url), renamed);
    EXPECT_EQ(scene.locator.locate(file.ref, file.url), renamed);
}

TEST(LocatorShortageTest, ClosesADescriptorOfItsOwnToLookForAnObject)
{
    Scene scene;
    scene.locator.setDescriptorBudget(2);
    scene.track(scene.folder.write("held"));
    const auto file = scene.track(scene.folder.write("before"));
    const auto renamed = scene.folder.rename("before", "after");
    const FewDescriptors none(0);

    EXPECT_EQ(scene.locator.locate(file.ref, file.url), renamed);
    EXPECT_EQ(scene.locator.heldDescriptorCount(), 0u);
}

} // namespace
