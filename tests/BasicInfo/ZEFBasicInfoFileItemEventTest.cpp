// SPDX-License-Identifier: MIT
#include "tests/support/BasicInfoFixture.h"

#include <gtest/gtest.h>

namespace {

class ZEFBasicInfoFileItemEventTest : public BasicInfoFixture {
protected:
    ZEFBasicInfoFileItemEventTest()
    {
        files.addFile("/file");
        files.addFolder("/folder");
    }

    static void askEverything(ZEFBasicInfoFileItem& item)
    {
        item.fileName();
        item.displayName();
        item.resolvedUTI();
        item.resolvedPath();
        item.resolvedFile();
        item.isDirectory();
        item.isApplication();
        item.isInvisible();
    }

    // The tail of the description, which tells what is known.
    static std::string known(const ZEFBasicInfoFileItem& item)
    {
        const auto text = item.description();
        return text.substr(text.find("resolved url"));
    }
};

TEST_F(ZEFBasicInfoFileItemEventTest, DropsNothingOfAPlainFileThatWasUpdated)
{
    const auto file = info("/file");
    askEverything(*file);
    const auto before = known(*file);
    const auto count = information.count();

    happened(*file, ZEFFileEvent::updated);
    askEverything(*file);

    EXPECT_EQ(known(*file), before);
    EXPECT_EQ(information.count(), count);
}

TEST_F(ZEFBasicInfoFileItemEventTest, DropsTheTargetOfAnAliasThatWasUpdated)
{
    const auto alias = aliasTo("/alias", "/folder");
    askEverything(*alias);
    const auto names = information.count(Question::displayName);
    information.setInvisible(url("/alias"), true);

    happened(*alias, ZEFFileEvent::updated);

    EXPECT_EQ(known(*alias),
        "resolved url: (null), resolvedIsDirectory: 1, isDirectory: 1, isPackage: 0, "
        "isApplication: 0, isInvisible: -1, isSymlink: 0, UTI: org.freedesktop.alias-file");
    alias->displayName();
    EXPECT_EQ(information.count(Question::displayName), names);
    EXPECT_TRUE(alias->isInvisible());
}

TEST_F(ZEFBasicInfoFileItemEventTest, DropsNamesAndTypesOfAFileThatGotAnotherPlace)
{
    for (const auto event :
        { ZEFFileEvent::moved, ZEFFileEvent::renamed, ZEFFileEvent::appeared }) {
        const auto file = info("/file");
        askEverything(*file);
        files.rename("/file", "/other");
        locator.setPlace(ref("/other"), url("/other"));
        information.setContentType(url("/other"), "public.image");
        file->currentURL();

        happened(*file, event);

        EXPECT_EQ(known(*file),
            "resolved url: (null), resolvedIsDirectory: 0, isDirectory: 0, isPackage: 0, "
            "isApplication: 0, isInvisible: -1, isSymlink: 0, UTI: (null)");
        EXPECT_EQ(*file->fileName(), "other");
        EXPECT_EQ(*file->displayName(), "other");
        EXPECT_EQ(file->uti(), "public.image");
        EXPECT_EQ(file->resolvedUTI(), "public.image");
        EXPECT_EQ(*file->resolvedPath(), "/other");
        files.rename("/other", "/file");
        locator.setPlace(ref("/file"), url("/file"));
    }
}

TEST_F(ZEFBasicInfoFileItemEventTest, ForgetsTheKindOfAFolderThatWasRenamed)
{
    const auto folder = infoAt(folderURL("/folder"));
    askEverything(*folder);
    information.setContentType(url("/folder"), "org.freedesktop.package");

    happened(*folder, ZEFFileEvent::renamed);

    EXPECT_TRUE(folder->isPackage());
    EXPECT_FALSE(folder->isDirectory());
}

TEST_F(ZEFBasicInfoFileItemEventTest, DropsNothingForOtherEvents)
{
    const auto alias = aliasTo("/alias", "/folder");
    askEverything(*alias);
    const auto before = known(*alias);

    happened(*alias, ZEFFileEvent::removed);
    happened(*alias, ZEFFileEvent::movedInParent);

    EXPECT_EQ(known(*alias), before);
}

TEST_F(ZEFBasicInfoFileItemEventTest, GivesUpTheItemOfTheTargetWithTheTarget)
{
    const auto alias = aliasTo("/alias", "/file");
    const auto target = alias->resolvedFile();
    ASSERT_EQ(target->retainCount(), 2U);

    happened(*alias, ZEFFileEvent::updated);

    EXPECT_EQ(target->retainCount(), 1U);
}

TEST_F(ZEFBasicInfoFileItemEventTest, GivesUpTheItemOfTheTargetWhenItDies)
{
    auto alias = aliasTo("/alias", "/file");
    const auto target = alias->resolvedFile();

    alias = nullptr;

    EXPECT_EQ(target->retainCount(), 1U);
}

TEST_F(ZEFBasicInfoFileItemEventTest, KeepsTheAliasStatusThroughAllEvents)
{
    const auto alias = aliasTo("/alias", "/folder");
    askEverything(*alias);
    information.setContentType(url("/alias"), "public.data");

    happened(*alias, ZEFFileEvent::renamed);

    EXPECT_TRUE(alias->isAlias());
    EXPECT_EQ(information.count(Question::aliasFile), 1U);
    alias->resolvedURL();
    EXPECT_EQ(information.count(Question::aliasFile), 1U);
}

TEST_F(ZEFBasicInfoFileItemEventTest, DropsNothingForNil)
{
    const auto file = info("/file");
    askEverything(*file);
    const auto before = known(*file);

    file->eventOccurred(nullptr);

    EXPECT_EQ(known(*file), before);
}

TEST_F(ZEFBasicInfoFileItemEventTest, ComputesNothingForItsDescription)
{
    const auto file = info("/file");

    EXPECT_EQ(known(*file),
        "resolved url: (null), resolvedIsDirectory: -1, isDirectory: -1, isPackage: -1, "
        "isApplication: -1, isInvisible: -1, isSymlink: 0, UTI: (null)");
    EXPECT_EQ(information.count(), 0U);
}

} // namespace
