// SPDX-License-Identifier: MIT
#include "tests/support/BasicInfoFixture.h"

#include <gtest/gtest.h>

namespace {

class ZEFBasicInfoFileItemVisibilityTest : public BasicInfoFixture { };

TEST_F(ZEFBasicInfoFileItemVisibilityTest, IsAsVisibleAsTheSystemSaysForItsReference)
{
    files.addFile("/hidden");
    files.addFile("/shown");
    information.setInvisible(url("/hidden"), true);
    const auto hidden = info("/hidden");

    EXPECT_TRUE(hidden->isInvisible());
    EXPECT_TRUE(hidden->isInvisible());
    EXPECT_FALSE(info("/shown")->isInvisible());
    EXPECT_EQ(information.count(Question::invisibility), 2U);
    EXPECT_EQ(information.count(Question::invisibilityAtURL), 0U);
}

TEST_F(ZEFBasicInfoFileItemVisibilityTest, IsVisibleWhenTheSystemFailsForItsReference)
{
    files.addFile("/file");
    information.setInvisible(url("/file"), true);
    information.setError(Question::invisibility, url("/file"), zef::FileError::notFound);

    EXPECT_FALSE(info("/file")->isInvisible());
    EXPECT_EQ(log.lines(),
        std::vector<std::string>{
            "Error -43 getting item invisibility for file file:///file with ref" });
}

TEST_F(ZEFBasicInfoFileItemVisibilityTest, IsAsVisibleAsTheSystemSaysForItsURLWithoutAReference)
{
    files.addFile("/hidden");
    files.addFile("/shown");
    information.setInvisible(url("/hidden"), true);

    EXPECT_TRUE(withoutReference(url("/hidden"))->isInvisible());
    EXPECT_FALSE(withoutReference(url("/shown"))->isInvisible());
    EXPECT_EQ(information.count(Question::invisibilityAtURL), 2U);
}

TEST_F(ZEFBasicInfoFileItemVisibilityTest, IsInvisibleWhenTheSystemFailsWithoutAReference)
{
    files.addFile("/file");
    information.setError(Question::invisibilityAtURL, url("/file"), zef::FileError::io);

    EXPECT_TRUE(withoutReference(url("/file"))->isInvisible());
    EXPECT_EQ(log.lines(),
        std::vector<std::string>{
            "Error -36 getting item invisibility for file file:///file without ref" });
}

TEST_F(ZEFBasicInfoFileItemVisibilityTest, HidesTheFoldersOfHomesAndOfTheNetworkWithoutAsking)
{
    files.addFolder("/home");
    files.addFolder("/net");

    EXPECT_TRUE(infoAt(folderURL("/home"))->isInvisible());
    EXPECT_TRUE(infoAt(folderURL("/net"))->isInvisible());
    EXPECT_EQ(information.count(), 0U);
}

} // namespace
