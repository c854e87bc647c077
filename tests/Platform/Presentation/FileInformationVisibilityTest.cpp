// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"

#include "tests/support/FakeFileSystem.h"
#include "tests/support/FileInformationFixture.h"

#include <cerrno>

#include <sys/stat.h>

namespace {

using FileInformationVisibilityTest = FileInformationFixture;

TEST_F(FileInformationVisibilityTest, HidesDotNamesAndWhatTheFolderLists)
{
    folder.write(".dot");
    folder.write("listed");
    folder.write("plain");
    folder.makeFolder("listed folder");
    folder.symlink("nowhere", "listed link");
    folder.write(".hidden", "listed\nlisted folder\nlisted link\n");

    for (const auto* name : { ".dot", "listed", "listed folder", "listed link" }) {
        EXPECT_EQ(visibilityOf(name), "hidden") << name;
        EXPECT_EQ(visibilityAt(track(name).url), "hidden") << name;
    }
    EXPECT_EQ(visibilityOf("plain"), "visible");
    EXPECT_EQ(visibilityAt(folder.url("plain")), "visible");
}

TEST_F(FileInformationVisibilityTest, ShowsTheRoot)
{
    const auto root = track("/", {});

    EXPECT_EQ(visibilityOf(root), "visible");
    EXPECT_EQ(visibilityAt(root.url), "visible");
}

TEST_F(FileInformationVisibilityTest, ShowsEverythingWhereTheListIsAFIFO)
{
    folder.write("file");
    ASSERT_EQ(::mkfifo(folder.path(".hidden").c_str(), 0666), 0);

    EXPECT_EQ(visibilityOf("file"), "visible");
    EXPECT_EQ(visibilityOf(".hidden"), "hidden");
}

TEST_F(FileInformationVisibilityTest, SaysOfAnObjectThatIsGoneThatItIsNotFound)
{
    folder.write("file");
    folder.write(".dot");
    const auto file = track("file");
    const auto dot = track(".dot");
    folder.remove("file");
    folder.remove(".dot");

    EXPECT_EQ(visibilityOf(file), "error -43");
    EXPECT_EQ(visibilityOf(dot), "error -43");
    EXPECT_EQ(visibilityAt(file.url), "error -43");
    EXPECT_EQ(visibilityAt(dot.url), "error -43");
}

TEST_F(FileInformationVisibilityTest, GoesByTheNameThatAnObjectHasNow)
{
    folder.write("shown");
    const auto file = track("shown");
    folder.rename("shown", ".dot");

    EXPECT_EQ(visibilityOf(file), "hidden");
    EXPECT_EQ(visibilityAt(file.url), "error -43");
}

TEST_F(FileInformationVisibilityTest, GoesByTheFolderThatAnObjectIsInNow)
{
    folder.makeFolder("here");
    folder.makeFolder("there");
    folder.write("there/.hidden", "file\n");
    folder.write("here/file");
    auto file = track("here/file");
    FakeLocator locator;
    locator.setPlace(file.ref, folder.url("there/file"));

    EXPECT_EQ(visibilityOf(file), "visible");
    folder.rename("here/file", "there/file");
    EXPECT_EQ(visibilityOf(file), "hidden");
    file.url = nullptr;
    EXPECT_EQ(visibilityOf(file), "hidden");
}

TEST_F(FileInformationVisibilityTest, TellsWhyItCannotAnswer)
{
    EXPECT_EQ(visibilityAt(nullptr), "error -1401");
    EXPECT_EQ(visibilityOf(Seen{ {}, folder.url("file") }), "error -1401");
    EXPECT_EQ(visibilityAt(folder.url("missing/file")), "error -43");

    folder.makeFolder("closed");
    folder.write("closed/file");
    const auto file = track("closed/file");
    folder.chmod("closed", 0);
    const WithoutPrivileges plain;
    EXPECT_EQ(visibilityAt(file.url), "error -5000");
}

TEST_F(FileInformationVisibilityTest, LooksAtTheDiskTwiceForAnOrdinaryFile)
{
    FakeFileSystem files;
    const zef::FSRef ref(files.addFile("/file"));
    const zef::FSRef dotRef(files.addFile("/.file"));
    const auto looks = files.statCount();

    EXPECT_EQ(
        visibilityOf(Seen{ ref, zef::FileURL::fromPath("/file", zef::URLKind::file) }), "visible");
    EXPECT_EQ(files.statCount(), looks + 2);
    EXPECT_EQ(visibilityOf(Seen{ dotRef, zef::FileURL::fromPath("/.file", zef::URLKind::file) }),
        "hidden");
    EXPECT_EQ(files.statCount(), looks + 3);
}

} // namespace
