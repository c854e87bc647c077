// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Text/LocalizedString.h"

#include "tests/support/BasicInfoFixture.h"

#include <gtest/gtest.h>

namespace {

class ZEFBasicInfoFileItemNameTest : public BasicInfoFixture { };

TEST_F(ZEFBasicInfoFileItemNameTest, HasTheLastComponentForItsFileName)
{
    files.addFile("/a file.txt");
    const auto file = info("/a file.txt");

    EXPECT_EQ(*file->fileName(), "a file.txt");
    EXPECT_EQ(information.count(), 0U);
}

TEST_F(ZEFBasicInfoFileItemNameTest, KeepsTheFileNameOfALostFile)
{
    files.addFile("/file");
    const auto file = info("/file");
    file->fileName();
    files.remove("/file");
    file->currentURL();

    ASSERT_FALSE(file->isValid());
    EXPECT_EQ(*file->fileName(), "file");
}

TEST_F(ZEFBasicInfoFileItemNameTest, HasNoFileNameForALostFileThatWasNeverAsked)
{
    files.addFile("/file");
    const auto file = info("/file");
    files.remove("/file");
    file->currentURL();

    EXPECT_FALSE(file->fileName());
}

TEST_F(ZEFBasicInfoFileItemNameTest, ShowsTheNameThatTheSystemGivesForItsReference)
{
    files.addFile("/entry.desktop");
    information.setDisplayName(url("/entry.desktop"), "Editor");
    const auto file = info("/entry.desktop");

    EXPECT_EQ(*file->displayName(), "Editor");
    EXPECT_EQ(*file->displayName(), "Editor");
    EXPECT_EQ(information.count(Question::displayName), 1U);
    EXPECT_EQ(information.count(Question::displayNameAtPath), 0U);
}

TEST_F(ZEFBasicInfoFileItemNameTest, AsksForTheNameByPathWithoutAReference)
{
    files.addFile("/file");
    information.setDisplayName(url("/file"), "By path");
    const auto file = withoutReference(url("/file"));

    EXPECT_EQ(*file->displayName(), "By path");
    EXPECT_EQ(information.count(Question::displayName), 0U);
    EXPECT_EQ(information.count(Question::displayNameAtPath), 1U);
}

TEST_F(ZEFBasicInfoFileItemNameTest, ShowsTheLastComponentWhereTheSystemHasNoName)
{
    files.addFile("/file");
    information.setDisplayName(url("/file"), "");
    const auto file = info("/file");
    const auto description = file->description();

    EXPECT_EQ(*file->displayName(), "file");
    EXPECT_EQ(log.lines(),
        std::vector<std::string>{ "Error getting display name for item " + description });
}

TEST_F(ZEFBasicInfoFileItemNameTest, CallsTheVolumesFolderComputer)
{
    files.addFolder("/Volumes");
    const auto folder = infoAt(folderURL("/Volumes"));

    EXPECT_EQ(*folder->fileName(), "Computer");
    EXPECT_EQ(*folder->displayName(), "Computer");
    EXPECT_EQ(information.count(), 0U);
}

TEST_F(ZEFBasicInfoFileItemNameTest, CallsTheVolumesFolderWhatTheHostTranslates)
{
    const auto former = zef::setLocalizer([](const std::string& key) { return "<" + key + ">"; });
    files.addFolder("/Volumes");
    const auto folder = infoAt(folderURL("/Volumes"));

    EXPECT_EQ(*folder->fileName(), "<Computer>");
    EXPECT_EQ(*folder->displayName(), "<Computer>");
    zef::setLocalizer(former);
}

TEST_F(ZEFBasicInfoFileItemNameTest, KnowsTheRootAndTheVolumesFolderByTheirURLs)
{
    files.addFolder("/Volumes");
    files.addFolder("/folder");
    const auto root = infoAt(folderURL("/"));
    const auto volumes = infoAt(folderURL("/Volumes"));
    const auto folder = infoAt(folderURL("/folder"));

    EXPECT_TRUE(root->isRootDirectory());
    EXPECT_FALSE(root->isVolumesDirectory());
    EXPECT_FALSE(volumes->isRootDirectory());
    EXPECT_TRUE(volumes->isVolumesDirectory());
    EXPECT_FALSE(folder->isRootDirectory());
    EXPECT_FALSE(folder->isVolumesDirectory());
}

} // namespace
