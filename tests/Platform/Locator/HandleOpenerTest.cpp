// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/HandleOpener.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/Privileges.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

namespace {

using Outcome = zef::HandleOpener::Outcome;

class HandleOpenerTest : public testing::Test {
protected:
    // With its handle.
    zef::FSRef ref(std::string_view name)
    {
        const auto path = folder.path(name);
        zef::Stat stat;
        zef::FileSystem::system().statLink(path.c_str(), stat);
        zef::FSRef result(stat);
        result.setHandle(zef::FileSystem::system().handle(path.c_str()));
        return result;
    }

    Outcome open(const zef::FSRef& ref, const zef::FileURL& near)
    {
        auto [outcome, opened] = opener.open(ref, near);
        object = std::move(opened);
        return outcome;
    }

    Outcome open(const zef::FSRef& ref) { return open(ref, folder.url("near")); }

    TemporaryFolder folder;
    zef::HandleOpener opener;
    zef::Ref<zef::ObjectDescriptor> object;
};

// Tests of what only a privileged process may.
class PrivilegedHandleOpenerTest : public HandleOpenerTest {
protected:
    void SetUp() override
    {
        if (!mayOpenByHandle(folder.path()))
            GTEST_SKIP() << "the process may not open objects by their handles";
    }
};

TEST_F(PrivilegedHandleOpenerTest, OpensAnObjectThatWasMoved)
{
    folder.makeFolder("inner");
    folder.write("file");
    const auto file = ref("file");
    folder.rename("file", "inner/file");

    EXPECT_EQ(open(file), Outcome::opened);
    ASSERT_TRUE(object);
    zef::Stat stat;
    ASSERT_EQ(object->stat(stat), 0);
    EXPECT_TRUE(file.hasNumbersOf(stat));
}

TEST_F(PrivilegedHandleOpenerTest, OpensALinkItself)
{
    folder.symlink("missing", "link");

    EXPECT_EQ(open(ref("link")), Outcome::opened);
}

TEST_F(PrivilegedHandleOpenerTest, OpensWithNothingKnownOfThePlace)
{
    folder.write("file");

    EXPECT_EQ(open(ref("file"), nullptr), Outcome::opened);
}

TEST_F(PrivilegedHandleOpenerTest, OpensWhenThePlaceIsOnAnotherVolume)
{
    folder.write("file");

    EXPECT_EQ(open(ref("file"), zef::FileURL::fromPath("/proc/self/x", zef::URLKind::file)),
        Outcome::opened);
}

TEST_F(PrivilegedHandleOpenerTest, KnowsThatAnObjectIsGone)
{
    folder.write("file");
    const auto file = ref("file");
    folder.remove("file");
    folder.write("file");

    EXPECT_EQ(open(file), Outcome::gone);
    EXPECT_FALSE(object);
}

TEST_F(PrivilegedHandleOpenerTest, KnowsThatAnObjectHasNoNameAnyMore)
{
    folder.write("file");
    const auto file = ref("file");
    const auto held = zef::ObjectDescriptor::open(folder.path("file").c_str());
    folder.remove("file");

    EXPECT_EQ(open(file), Outcome::gone);
}

TEST_F(PrivilegedHandleOpenerTest, RefusesWhatAnotherObjectsHandleOpens)
{
    folder.write("one");
    folder.write("other");
    auto mixed = ref("one");
    mixed.setHandle(ref("other").handle());

    EXPECT_EQ(open(mixed), Outcome::unknown);
    EXPECT_FALSE(object);
}

TEST_F(PrivilegedHandleOpenerTest, GivesUpAtTheFirstRefusalUntilItHasTheCapability)
{
    folder.write("file");
    {
        const WithoutPrivileges none;
        EXPECT_TRUE(opener.mayOpen());
        EXPECT_EQ(open(ref("file")), Outcome::unknown);
        EXPECT_FALSE(opener.mayOpen());
    }

    EXPECT_TRUE(opener.mayOpen());
    EXPECT_EQ(open(ref("file")), Outcome::opened);
}

TEST_F(HandleOpenerTest, CanNotTellWithoutAHandle)
{
    folder.write("file");
    auto file = ref("file");
    file.setHandle({});

    EXPECT_EQ(open(file), Outcome::unknown);
    EXPECT_TRUE(opener.mayOpen());
}

TEST_F(HandleOpenerTest, CanNotTellFromADigest)
{
    folder.write("file");
    auto file = ref("file");
    auto handle = file.handle();
    handle.isDigest = true;
    handle.isDecodable = false;
    file.setHandle(handle);

    EXPECT_EQ(open(file), Outcome::unknown);
    EXPECT_TRUE(opener.mayOpen());
}

TEST_F(HandleOpenerTest, CanNotTellOnADeviceThatIsNotMounted)
{
    zef::Stat stat;
    stat.device = 0xffffffff;
    stat.inode = 1;
    zef::FSRef ref(stat);
    ref.setHandle({ .type = 1, .length = 8, .isDecodable = true });

    EXPECT_EQ(open(ref), Outcome::unknown);
}

} // namespace
