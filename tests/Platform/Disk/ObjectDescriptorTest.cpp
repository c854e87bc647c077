// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/ObjectDescriptor.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <fcntl.h>

namespace {

class ObjectDescriptorTest : public testing::Test {
protected:
    zef::Ref<zef::ObjectDescriptor> open(std::string_view name)
    {
        return zef::ObjectDescriptor::open(folder.path(name).c_str());
    }

    zef::Stat stat(std::string_view name)
    {
        zef::Stat result;
        zef::FileSystem::system().statLink(folder.path(name).c_str(), result);
        return result;
    }

    static std::string path(const zef::ObjectDescriptor& object)
    {
        zef::PathBytes bytes;
        return object.currentPath(bytes) ? std::string(bytes.view()) : "none";
    }

    TemporaryFolder folder;
};

TEST_F(ObjectDescriptorTest, DescribesTheObject)
{
    folder.write("file", "four");
    zef::Stat described;

    EXPECT_EQ(open("file")->stat(described), 0);
    EXPECT_EQ(described.inode, stat("file").inode);
    EXPECT_EQ(described.size, 4u);
}

TEST_F(ObjectDescriptorTest, KnowsItsMount)
{
    folder.write("file");
    zef::Stat described;
    std::uint64_t ofFile = 0;
    std::uint64_t ofFolder = 0;
    ASSERT_EQ(open("file")->stat(described, ofFile), 0);
    ASSERT_EQ(open("")->stat(described, ofFolder), 0);

    EXPECT_EQ(ofFile, ofFolder);
}

TEST_F(ObjectDescriptorTest, OpensALinkItself)
{
    folder.symlink("missing", "link");
    zef::Stat described;
    const auto object = open("link");

    ASSERT_TRUE(object);
    EXPECT_EQ(object->stat(described), 0);
    EXPECT_TRUE(described.isSymlink());
}

TEST_F(ObjectDescriptorTest, IsNullWithAReasonForWhatIsNotThere)
{
    EXPECT_FALSE(open("missing"));
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(ObjectDescriptorTest, IsForThisProgramOnly)
{
    EXPECT_EQ(::fcntl(open("")->descriptor(), F_GETFD), FD_CLOEXEC);
}

TEST_F(ObjectDescriptorTest, ClosesWithTheLastReference)
{
    auto object = open("");
    const int descriptor = object->descriptor();
    object = nullptr;

    EXPECT_EQ(::fcntl(descriptor, F_GETFD), -1);
}

TEST_F(ObjectDescriptorTest, TellsThePathAfterARename)
{
    folder.makeFolder("inner");
    folder.write("inner/file");
    const auto object = open("inner/file");
    folder.rename("inner/file", "inner/two\nlines\xff");
    folder.rename("inner", "other");

    EXPECT_EQ(path(*object), folder.path("other/two\nlines\xff"));
}

TEST_F(ObjectDescriptorTest, KnowsThatItsObjectHasNoNameAnyMore)
{
    folder.write("one");
    folder.link("one", "other");
    const auto object = open("one");
    folder.remove("one");

    EXPECT_FALSE(object->isNameless());
    folder.remove("other");
    EXPECT_TRUE(object->isNameless());
}

TEST_F(ObjectDescriptorTest, HasTheHandleOfTheObject)
{
    folder.write("file");
    const auto handle = open("file")->handle();

    EXPECT_EQ(handle, zef::FileSystem::system().handle(folder.path("file").c_str()));
}

TEST_F(ObjectDescriptorTest, IsTheObjectWithTheSameNumbersAndBirth)
{
    folder.write("file");
    const auto found = stat("file");

    EXPECT_TRUE(open("file")->isObject(zef::FSRef(found), found));
}

TEST_F(ObjectDescriptorTest, IsNotTheObjectThatHadTheNumberBefore)
{
    folder.write("file");
    const auto found = stat("file");
    auto before = found;
    before.hasBirthTime = true;
    before.birthTime -= 1;
    if (!found.hasBirthTime)
        GTEST_SKIP() << "the file system keeps no birth times";

    EXPECT_FALSE(open("file")->isObject(zef::FSRef(before), found));
}

TEST_F(ObjectDescriptorTest, IsTheObjectWhoseBirthTimeWasChangedWhenTheHandlesAgree)
{
    folder.write("file");
    const auto object = open("file");
    const auto found = stat("file");
    auto before = found;
    before.birthTime -= 1;
    zef::FSRef ref(before);
    ref.setHandle(object->handle());
    if (!ref.hasHandle())
        GTEST_SKIP() << "the file system has no handles";

    EXPECT_TRUE(object->isObject(ref, found));
}

} // namespace
