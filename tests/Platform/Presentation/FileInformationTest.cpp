// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"

#include "tests/support/FileInformationFixture.h"

#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using Result = zef::FileError;
using FileInformationTest = FileInformationFixture;

TEST_F(FileInformationTest, TellsTheTypeOfAFileByItsName)
{
    folder.write("file");
    folder.write("text.txt");

    EXPECT_EQ(typeOf("file"), "public.data");
    EXPECT_TRUE(types.conforms(typeOf("text.txt"), "public.plain-text"));
}

TEST_F(FileInformationTest, TellsTheTypeOfAFolderByItsName)
{
    folder.makeFolder("folder");
    folder.makeFolder("Program.app");
    folder.makeFolder("folder.desktop");

    EXPECT_EQ(typeOf("folder"), "public.folder");
    EXPECT_TRUE(types.conforms(typeOf("Program.app"), zef::type::package));
    EXPECT_FALSE(types.conforms(typeOf("folder.desktop"), zef::type::data));
    EXPECT_EQ(typeOf(track("/", {})), "public.folder");
}

TEST_F(FileInformationTest, TellsTheTypeOfALinkItself)
{
    folder.symlink("nowhere", "link");
    folder.symlink("nowhere", "link.desktop");

    EXPECT_EQ(typeOf("link"), "public.symlink");
    EXPECT_EQ(typeOf("link.desktop"), "public.symlink");
}

TEST_F(FileInformationTest, TellsDesktopEntriesApartByWhatIsInThem)
{
    writeEntry("alias.desktop", "Type=Link\nURL=/etc\n");
    writeEntry("web.desktop", "Type=Link\nURL=https://example.org/\n");
    writeEntry("application.desktop", "Type=Application\nExec=/bin/false\n");
    writeEntry("folder.desktop", "Type=Directory\n");
    folder.write("broken.desktop", "nonsense");
    folder.write("empty.desktop", "");
    ASSERT_EQ(::mkfifo(folder.path("fifo.desktop").c_str(), 0666), 0);

    EXPECT_EQ(typeOf("alias.desktop"), zef::type::aliasFile);
    EXPECT_EQ(typeOf("application.desktop"), zef::type::applicationEntry);
    for (const auto* name :
        { "web.desktop", "folder.desktop", "broken.desktop", "empty.desktop", "fifo.desktop" })
        EXPECT_EQ(typeOf(name), zef::type::desktopEntry) << name;
}

TEST_F(FileInformationTest, KnowsTheTypesThatItGivesToDesktopEntries)
{
    EXPECT_TRUE(types.conforms(zef::type::aliasFile, zef::type::data));
    EXPECT_TRUE(types.conforms(zef::type::applicationEntry, zef::type::application));
    EXPECT_TRUE(types.conforms(zef::type::applicationEntry, zef::type::data));
    EXPECT_TRUE(types.conforms(zef::type::desktopEntry, zef::type::data));
}

TEST_F(FileInformationTest, TakesADesktopEntryThatCannotBeReadForNoAlias)
{
    writeEntry("alias.desktop", "Type=Link\nURL=/etc\nName=Name\n");
    folder.chmod("alias.desktop", 0);
    const WithoutPrivileges plain;

    EXPECT_EQ(typeOf("alias.desktop"), zef::type::desktopEntry);
    EXPECT_EQ(displayNameOf("alias.desktop"), "alias.desktop");
}

TEST_F(FileInformationTest, TellsTheTypeOfAFileThatIsGoneWhereTheNameSuffices)
{
    folder.write("file");
    writeEntry("alias.desktop", "Type=Link\nURL=/etc\n");
    const auto file = track("file");
    const auto alias = track("alias.desktop");
    folder.remove("file");
    folder.remove("alias.desktop");

    EXPECT_EQ(typeOf(file), "public.data");
    EXPECT_EQ(typeOf(alias), "error -43");
}

TEST_F(FileInformationTest, TellsTheTypeOfAnObjectWhosePlaceIsNotKnown)
{
    folder.makeFolder("folder");
    const zef::FSRef ref = track("folder").ref;
    FakeLocator locator;
    EXPECT_EQ(typeOf({ ref, nullptr, false }), "error -43");

    locator.setAnswer(folder.folderUrl("folder"));

    EXPECT_EQ(typeOf({ ref, nullptr, false }), "public.folder");
}

TEST_F(FileInformationTest, ReadsADesktopEntryThatWasRenamed)
{
    writeEntry("old.desktop", "Type=Link\nURL=/etc\nName=Shown\n");
    const auto alias = track("old.desktop");
    folder.rename("old.desktop", "new.desktop");

    EXPECT_EQ(typeOf(alias), zef::type::aliasFile);
    EXPECT_EQ(displayNameOf(alias), "Shown");

    folder.rename("new.desktop", "plain");
    EXPECT_EQ(typeOf(alias), "public.data");
    EXPECT_EQ(displayNameOf(alias), "plain");
}

TEST_F(FileInformationTest, TakesNoDesktopEntryForAnotherOneInItsPlace)
{
    writeEntry("alias.desktop", "Type=Link\nURL=/etc\nName=Old\n");
    const auto alias = track("alias.desktop");
    writeEntry("other.desktop", "Type=Application\nName=New\n");
    folder.rename("other.desktop", "alias.desktop");

    EXPECT_EQ(typeOf(alias), "error -43");
    EXPECT_EQ(displayNameOf(alias), "");
}

TEST_F(FileInformationTest, ShowsTheNameOfAFile)
{
    folder.write("file.txt");
    folder.write("Gr\xFC\xDF"
                 "e");
    folder.makeFolder("folder");
    folder.symlink("nowhere", "link.desktop");

    EXPECT_EQ(displayNameOf("file.txt"), "file.txt");
    EXPECT_EQ(displayNameOf("Gr\xFC\xDF"
                            "e"),
        "Gr\uFFFD\uFFFDe");
    EXPECT_EQ(displayNameOf("folder"), "folder");
    EXPECT_EQ(displayNameOf("link.desktop"), "link.desktop");
    EXPECT_EQ(displayNameOf(track("/", {})), "/");
}

TEST_F(FileInformationTest, ShowsTheNameThatADesktopEntryGivesItself)
{
    const EnvironmentVariable locale("LC_ALL", "de_AT.UTF-8");
    writeEntry("a.desktop", "Type=Link\nURL=https://example.org/\nName=Web\nName[de]=Netz\n");
    writeEntry("b.desktop", "Type=Application\nName=Program\n");
    writeEntry("c.desktop", "Type=Application\nName=two\\nlines\n");
    writeEntry("d.desktop", "Type=Directory\nName=Folder\n");

    EXPECT_EQ(displayNameOf("a.desktop"), "Netz");
    EXPECT_EQ(displayNameOf("b.desktop"), "Program");
    EXPECT_EQ(displayNameOf("c.desktop"), "c.desktop");
    EXPECT_EQ(displayNameOf("d.desktop"), "d.desktop");
}

TEST_F(FileInformationTest, ShowsNoNameOfAnObjectThatIsGoneAndWhosePlaceIsNotKnown)
{
    folder.write("file");
    const auto file = track("file");
    folder.remove("file");

    EXPECT_EQ(information.copyDisplayName({ file.ref, nullptr, false }), "");
    EXPECT_EQ(displayNameOf(file), "file");
}

TEST_F(FileInformationTest, ShowsTheLastComponentOfAPath)
{
    for (const auto& [path, name] :
        std::map<std::string, std::string>{ { "/", "/" }, { "///", "/" }, { "", "" },
            { "/a/b", "b" }, { "/a/b//", "b" }, { "relative", "relative" }, { "a/b/", "b" },
            { "/a/\xFF", "\uFFFD" }, { "/nowhere/x.desktop", "x.desktop" } })
        EXPECT_EQ(information.copyDisplayNameAtPath(path), name) << path;
}

TEST_F(FileInformationTest, ShowsTheNameOfADesktopEntryAtAPathToo)
{
    writeEntry("a.desktop", "Type=Application\nName=Program\n");
    folder.makeFolder("folder.desktop");
    folder.symlink("a.desktop", "link.desktop");

    EXPECT_EQ(information.copyDisplayNameAtPath(folder.path("a.desktop")), "Program");
    EXPECT_EQ(information.copyDisplayNameAtPath(folder.path("folder.desktop/")), "folder.desktop");
    EXPECT_EQ(information.copyDisplayNameAtPath(folder.path("link.desktop")), "link.desktop");
    EXPECT_EQ(information.copyDisplayNameAtPath(folder.path("a.desktop") + std::string(1, '\0')),
        std::string("a.desktop") + '\0');
}

} // namespace
