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
        return keep(information.resolveAliasFile(seen.ref, seen.url));
    }

    zef::FileError resolve(std::string_view name) { return resolve(track(name)); }

    zef::FileError findTarget(std::string_view name)
    {
        return keep(information.copyTargetOfURL(folder.url(name)));
    }

    bool isAt(std::string_view name) const
    {
        const auto seen = track(name);
        return target.url == seen.url && target.ref.hasNumbersOf(seen.ref);
    }

    zef::FileInformation::Target target;

private:
    zef::FileError keep(zef::Expected<zef::FileInformation::Target> found)
    {
        target = found ? *std::move(found) : zef::FileInformation::Target();
        return found.error();
    }
};

TEST_F(FileInformationTargetTest, IsItselfTheTargetOfWhatLeadsNowhere)
{
    folder.write("file");
    folder.makeFolder("folder");

    EXPECT_EQ(resolve("file"), Result::none);
    EXPECT_TRUE(isAt("file"));
    EXPECT_FALSE(target.isFolder);
    EXPECT_FALSE(target.wasAliased);

    EXPECT_EQ(resolve("folder"), Result::none);
    EXPECT_TRUE(isAt("folder"));
    EXPECT_TRUE(target.isFolder);
    EXPECT_FALSE(target.wasAliased);
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

    EXPECT_EQ(target.ref.parentInode(), 77u);
}

TEST_F(FileInformationTargetTest, FollowsAliasFilesAndLinks)
{
    folder.makeFolder("folder");
    folder.symlink("folder", "link");
    writeEntry("alias.desktop", "Type=Link\nURL=file://" + folder.path("link") + "\n");

    for (const auto* name : { "link", "alias.desktop" }) {
        EXPECT_EQ(resolve(name), Result::none);
        EXPECT_TRUE(isAt("folder")) << name;
        EXPECT_TRUE(target.isFolder);
        EXPECT_TRUE(target.wasAliased);
    }
}

TEST_F(FileInformationTargetTest, MarksTheURLOfAFolderAndOfNothingElse)
{
    folder.makeFolder("folder");
    folder.write("file");
    folder.symlink("folder", "to folder");
    folder.symlink("file", "to file");

    EXPECT_EQ(resolve("to folder"), Result::none);
    EXPECT_TRUE(target.url.hasDirectoryPath());
    EXPECT_EQ(resolve("to file"), Result::none);
    EXPECT_FALSE(target.url.hasDirectoryPath());
    auto marked = track("file");
    marked.url = marked.url.withKind(zef::URLKind::folder);
    EXPECT_EQ(resolve(marked), Result::none);
    EXPECT_FALSE(target.url.hasDirectoryPath());
}

TEST_F(FileInformationTargetTest, SaysWhyThereIsNoTarget)
{
    folder.symlink("nowhere", "dangling");
    folder.symlink("loop", "loop");
    writeEntry("self.desktop", "Type=Link\nURL=" + folder.path("self.desktop") + "\n");

    EXPECT_EQ(resolve("dangling"), Result::notFound);
    EXPECT_EQ(resolve("loop"), Result::io);
    EXPECT_EQ(resolve("self.desktop"), Result::io);
}

TEST_F(FileInformationTargetTest, FindsNoTargetOfAnObjectThatIsGone)
{
    folder.write("file");
    const auto file = track("file");
    folder.remove("file");

    EXPECT_EQ(resolve(file), Result::notFound);
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
    EXPECT_FALSE(target.wasAliased);

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
    EXPECT_EQ(information.copyTargetOfURL(nullptr).error(), Result::badReference);
}

TEST_F(FileInformationTargetTest, NeedsAReferenceToTheTarget)
{
    folder.write("file");
    folder.symlink("file", "link");
    FakeLocator locator;
    locator.setRefusesReferences(true);

    EXPECT_EQ(findTarget("link"), Result::badReference);
    EXPECT_EQ(resolve("link"), Result::badReference);
}

TEST_F(FileInformationTargetTest, GivesTargetsWhoseReferencesCostNothingToKeep)
{
    folder.write("file");
    folder.symlink("file", "link");
    const auto held = zef::Locator::system().heldDescriptorCount();

    EXPECT_EQ(findTarget("link"), Result::none);

    EXPECT_FALSE(target.ref.hasHandle());
    EXPECT_EQ(zef::Locator::system().heldDescriptorCount(), held);
}

} // namespace
