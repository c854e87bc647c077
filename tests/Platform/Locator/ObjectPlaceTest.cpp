// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/ObjectPlace.h"

#include "ZEFFilesystemTools/Platform/Disk/FileError.h"

#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeLocator.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

using Result = zef::FileError;

class ObjectPlaceTest : public testing::Test {
protected:
    static zef::FileURL url(std::string_view path)
    {
        return zef::FileURL::fromPath(path, zef::URLKind::file);
    }

    FakeFileSystem files;
    FakeLocator locator;
    zef::FSRef ref{ files.addFile("/file") };
    zef::ObjectPlace place;
};

TEST_F(ObjectPlaceTest, FindsAnObjectWhereItWasWithOneLook)
{
    const auto looks = files.statCount();

    EXPECT_EQ(place.find(ref, url("/file")), Result::none);

    EXPECT_EQ(place.url(), url("/file"));
    EXPECT_STREQ(place.path(), "/file");
    EXPECT_TRUE(ref.hasNumbersOf(place.stat()));
    EXPECT_EQ(files.statCount(), looks + 1);
    EXPECT_EQ(locator.locateCount(), 0);
}

TEST_F(ObjectPlaceTest, FindsAnObjectThatWasMoved)
{
    files.rename("/file", "/moved");
    locator.setPlace(ref, url("/moved"));

    EXPECT_EQ(place.find(ref, url("/file")), Result::none);
    EXPECT_EQ(place.url(), url("/moved"));
    EXPECT_EQ(place.find(ref, nullptr), Result::none);
    EXPECT_EQ(place.url(), url("/moved"));
}

TEST_F(ObjectPlaceTest, FindsNoObjectThatIsGone)
{
    files.remove("/file");
    EXPECT_EQ(place.find(ref, url("/file")), Result::notFound);
    EXPECT_EQ(place.find(ref, nullptr), Result::notFound);

    files.addFile("/file");
    EXPECT_EQ(place.find(ref, url("/file")), Result::notFound);
}

TEST_F(ObjectPlaceTest, TakesNoObjectForAnotherOneThatHasItsNumberNow)
{
    files.remove("/file");
    files.setNextInode(ref.inode());
    files.addFile("/file");

    EXPECT_EQ(place.find(ref, url("/file")), Result::notFound);
}

TEST_F(ObjectPlaceTest, FindsNothingByAnEmptyReference)
{
    EXPECT_EQ(place.find({}, url("/file")), Result::badReference);
}

TEST_F(ObjectPlaceTest, LooksAtWhateverIsThere)
{
    files.addLink("/link", "/nowhere");

    EXPECT_EQ(place.lookAt(url("/link")), Result::none);
    EXPECT_TRUE(place.stat().isSymlink());
}

TEST_F(ObjectPlaceTest, TellsWhyItCannotLook)
{
    EXPECT_EQ(place.lookAt(nullptr), Result::badReference);
    EXPECT_EQ(place.lookAt(url("/missing")), Result::notFound);
    EXPECT_EQ(place.lookAt(url("/file/in a file")), Result::notFound);
    EXPECT_EQ(place.lookAt(url("/" + std::string(5000, 'x'))), Result::io);
    files.setError("/file", EACCES);
    EXPECT_EQ(place.lookAt(url("/file")), Result::accessDenied);
    EXPECT_EQ(place.find(ref, url("/file")), Result::accessDenied);
    files.setError("/file", EIO);
    EXPECT_EQ(place.lookAt(url("/file")), Result::io);
}

} // namespace
