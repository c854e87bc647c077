// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Presentation/DesktopEntryCache.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/EnvironmentVariable.h"
#include "tests/support/SteppedClock.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WithoutPrivileges.h"

#include <gtest/gtest.h>

#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using zef::DesktopEntryCache;

constexpr auto* twoLanguages = "[Desktop Entry]\nType=Link\nURL=/file\nName=File\nName[de]=Datei\n";

class DesktopEntryCacheTest : public testing::Test {
protected:
    std::shared_ptr<const zef::DesktopEntry> entry(std::string_view name)
    {
        zef::Stat stat;
        EXPECT_EQ(zef::FileSystem::system().statLink(folder.path(name).c_str(), stat), 0);
        return entries.entry(folder.path(name).c_str(), stat);
    }

    TemporaryFolder folder;
    EnvironmentVariable locale{ "LC_ALL", "C" };
    // Years away from the files' stamps, so that every entry is remembered.
    SteppedClock clock;
    DesktopEntryCache entries{ clock };
};

TEST_F(DesktopEntryCacheTest, KnowsThemByTheirNames)
{
    for (const auto* name : { "a.desktop", "a.b.desktop", "..desktop", " .desktop" })
        EXPECT_TRUE(DesktopEntryCache::isNameOfEntry(name)) << name;
    for (const auto* name :
        { "", ".desktop", "desktop", "a.DESKTOP", "a.desktop~", "a.desktop.txt" })
        EXPECT_FALSE(DesktopEntryCache::isNameOfEntry(name)) << name;
}

TEST_F(DesktopEntryCacheTest, ReadsAnEntryOnce)
{
    folder.write("a.desktop", twoLanguages);

    const auto read = entry("a.desktop");

    ASSERT_TRUE(read);
    EXPECT_EQ(read->name(), "File");
    EXPECT_EQ(read->target(), "/file");
    EXPECT_EQ(entry("a.desktop"), read);
}

TEST_F(DesktopEntryCacheTest, ReadsAnEntryAgainThatChanged)
{
    folder.write("a.desktop", twoLanguages);
    entry("a.desktop");

    folder.write("a.desktop", "[Desktop Entry]\nType=Application\n");

    EXPECT_EQ(entry("a.desktop")->kind(), zef::DesktopEntry::Kind::application);
}

TEST_F(DesktopEntryCacheTest, GoesByTheLanguageOfTheMoment)
{
    folder.write("a.desktop", twoLanguages);
    EXPECT_EQ(entry("a.desktop")->name(), "File");

    locale.set("de_AT.UTF-8");
    EXPECT_EQ(entry("a.desktop")->name(), "Datei");

    locale.set("C");
    EXPECT_EQ(entry("a.desktop")->name(), "File");
}

TEST_F(DesktopEntryCacheTest, ReadsNothingButSmallRegularFiles)
{
    folder.makeFolder("folder.desktop");
    EXPECT_FALSE(entry("folder.desktop"));

    ASSERT_EQ(::mkfifo(folder.path("fifo.desktop").c_str(), 0666), 0);
    EXPECT_FALSE(entry("fifo.desktop"));

    folder.write("a.desktop", twoLanguages);
    folder.symlink("a.desktop", "link.desktop");
    EXPECT_FALSE(entry("link.desktop"));

    ASSERT_EQ(::truncate(folder.path("a.desktop").c_str(), 1 << 30), 0);
    EXPECT_FALSE(entry("a.desktop"));
}

TEST_F(DesktopEntryCacheTest, ReadsNothingThatMayNotBeRead)
{
    folder.write("a.desktop", twoLanguages);
    folder.chmod("a.desktop", 0);
    const WithoutPrivileges plain;

    EXPECT_FALSE(entry("a.desktop"));
}

} // namespace
