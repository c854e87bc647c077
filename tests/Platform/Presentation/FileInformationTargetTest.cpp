// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"

#include "tests/support/FakeFileSystem.h"
#include "tests/support/FileInformationFixture.h"

namespace {

using Result = zef::FileError;

class FileInformationTargetTest : public FileInformationFixture {
protected:
    zef::FileError resolve(const Seen& seen)
    {
        ref = seen.ref;
        url = seen.url;
        isFolder = false;
        wasAliased = false;
        return information.resolveAliasFile(ref, url, isFolder, wasAliased);
    }

    zef::FileError resolve(std::string_view name) { return resolve(track(name)); }

    zef::FileError findTarget(std::string_view name)
    {
        return information.copyTargetOfURL(folder.url(name), ref, url);
    }

    bool isAt(std::string_view name) const
    {
        const auto seen = track(name);
        return url == seen.url && ref.hasNumbersOf(seen.ref);
    }

    zef::FSRef ref;
    zef::FileURL url;
    bool isFolder = false;
    bool wasAliased = false;
};

TEST_F(FileInformationTargetTest, IsItselfTheTargetOfWhatLeadsNowhere)
{
    folder.write("file");
    folder.makeFolder("folder");

    EXPECT_EQ(resolve("file"), Result::none);
    EXPECT_TRUE(isAt("file"));
    EXPECT_FALSE(isFolder);
    EXPECT_FALSE(wasAliased);

    EXPECT_EQ(resolve("folder"), Result::none);
    EXPECT_TRUE(isAt("folder"));
    EXPECT_TRUE(isFolder);
    EXPECT_FALSE(wasAliased);
}

TEST_F(FileInformationTargetTest, CostsOneLookForWhatLeadsNowhere)
{
    FakeFileSystem files;
    const zef::FSRef made(files.addFile("/file"));
    const auto looks = files.statCount();

    EXPECT_EQ(
        resolve(Seen{ made, zef::FileURL::fromPath("/file", zef::URLKind::file) }), Result::none);

    EXPECT_EQ(files.statCount(), looks + 1);
}

TEST_F(FileInformationTargetTest, LeavesTheReferenceOfItsOwnTargetAsItWas)
{
    folder.write("file");
    auto seen = track("file");
    seen.ref.setParentInode(77);

    EXPECT_EQ(resolve(seen), Result::none);

    EXPECT_EQ(ref.parentInode(), 77u);
}

TEST_F(FileInformationTargetTest, FollowsAliasFilesAndLinks)
{
    folder.makeFolder("folder");
    folder.symlink("folder", "link");
    writeEntry("alias.desktop", "Type=Link\nURL=file://" + folder.path("link") + "\n");

    for (const auto* name : { "link", "alias.desktop" }) {
        EXPECT_EQ(resolve(name), Result::none);
        EXPECT_TRUE(isAt("folder")) << name;
        EXPECT_TRUE(isFolder);
        EXPECT_TRUE(wasAliased);
    }
}

TEST_F(FileInformationTargetTest, MarksTheURLOfAFolderAndOfNothingElse)
{
    folder.makeFolder("folder");
    folder.write("file");
    folder.symlink("folder", "to folder");
    folder.symlink("file", "to file");

    EXPECT_EQ(resolve("to folder"), Result::none);
    EXPECT_TRUE(url.hasDirectoryPath());
    EXPECT_EQ(resolve("to file"), Result::none);
    EXPECT_FALSE(url.hasDirectoryPath());
    auto marked = track("file");
    marked.url = marked.url.withKind(zef::URLKind::folder);
    EXPECT_EQ(resolve(marked), Result::none);
    EXPECT_FALSE(url.hasDirectoryPath());
}

TEST_F(FileInformationTargetTest, LeavesEverythingAsItWasWhereItFails)
{
    folder.symlink("nowhere", "dangling");
    folder.symlink("loop", "loop");
    writeEntry("self.desktop", "Type=Link\nURL=" + folder.path("self.desktop") + "\n");
    wasAliased = isFolder = true;

    for (const auto& [name, error] :
        std::map<std::string, zef::FileError>{ { "dangling", Result::notFound },
            { "loop", Result::io }, { "self.desktop", Result::io } }) {
        EXPECT_EQ(resolve(name), error) << name;
        EXPECT_TRUE(isAt(name));
        EXPECT_FALSE(isFolder);
        EXPECT_FALSE(wasAliased);
    }
}

TEST_F(FileInformationTargetTest, FindsNoTargetOfAnObjectThatIsGone)
{
    folder.write("file");
    const auto file = track("file");
    folder.remove("file");

    EXPECT_EQ(resolve(file), Result::notFound);
    EXPECT_EQ(url, file.url);
    EXPECT_EQ(resolve(Seen{}), Result::badReference);
}

TEST_F(FileInformationTargetTest, ResolvesAnObjectThatWasRenamed)
{
    folder.write("file");
    folder.symlink("file", "link");
    const auto file = track("file");
    const auto link = track("link");
    folder.rename("file", "new file");
    EXPECT_EQ(resolve(file), Result::none);
    EXPECT_TRUE(isAt("new file"));
    EXPECT_FALSE(wasAliased);

    folder.rename("new file", "file");
    folder.rename("link", "new link");
    EXPECT_EQ(resolve(link), Result::none);
    EXPECT_TRUE(isAt("file"));
}

TEST_F(FileInformationTargetTest, FindsTheTargetOfAURLByLinksAlone)
{
    folder.makeFolder("folder");
    folder.symlink("folder", "link");
    folder.symlink("link", "second");
    writeEntry("alias.desktop", "Type=Link\nURL=" + folder.path("folder") + "\n");

    EXPECT_EQ(findTarget("second"), Result::none);
    EXPECT_TRUE(isAt("folder"));
    EXPECT_EQ(findTarget("folder"), Result::none);
    EXPECT_TRUE(isAt("folder"));
    EXPECT_EQ(findTarget("alias.desktop"), Result::none);
    EXPECT_TRUE(isAt("alias.desktop"));
}

TEST_F(FileInformationTargetTest, FindsNoTargetOfAURLThatLeadsNowhere)
{
    folder.symlink("nowhere", "dangling");
    folder.symlink("loop", "loop");

    EXPECT_EQ(findTarget("missing"), Result::notFound);
    EXPECT_EQ(findTarget("dangling"), Result::notFound);
    EXPECT_EQ(findTarget("loop"), Result::io);
    EXPECT_EQ(information.copyTargetOfURL(nullptr, ref, url), Result::badReference);
    EXPECT_TRUE(ref.isEmpty());
    EXPECT_FALSE(url);
}

TEST_F(FileInformationTargetTest, NeedsAReferenceToTheTarget)
{
    folder.write("file");
    folder.symlink("file", "link");
    FakeLocator locator;
    locator.setRefusesReferences(true);

    EXPECT_EQ(findTarget("link"), Result::badReference);
    EXPECT_EQ(resolve("link"), Result::badReference);
    EXPECT_TRUE(isAt("link"));
}

TEST_F(FileInformationTargetTest, GivesTargetsWhoseReferencesCostNothingToKeep)
{
    folder.write("file");
    folder.symlink("file", "link");
    const auto held = zef::Locator::system().heldDescriptorCount();

    EXPECT_EQ(findTarget("link"), Result::none);

    EXPECT_FALSE(ref.hasHandle());
    EXPECT_EQ(zef::Locator::system().heldDescriptorCount(), held);
}

} // namespace
