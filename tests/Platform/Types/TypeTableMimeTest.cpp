// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include "tests/support/LogRecorder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// A user's database and a less important one of the system, both empty at first.
class TypeTableMimeTest : public testing::Test {
protected:
    TypeTableMimeTest()
    {
        folder.makeFolder("user");
        folder.makeFolder("system");
    }

    zef::TypeTable table() const
    {
        return zef::TypeTable({ folder.path("user"), folder.path("system") });
    }

    std::string typeOf(const std::string& name) const { return table().typeOfFileNamed(name); }

    void makeSparse(const std::string& name, off_t size)
    {
        folder.write(name, "50:text/x-a:*.aaa\n");
        ASSERT_EQ(::truncate(folder.path(name).c_str(), size), 0);
    }

    TemporaryFolder folder;
    LogRecorder log;
};

TEST_F(TypeTableMimeTest, GivesUnknownExtensionsTheTypesOfTheDatabase)
{
    folder.write("system/globs2", "# a comment\n50:application/x-thing:*.thing\n");

    EXPECT_EQ(typeOf("a.thing"), "mime:application/x-thing");
    EXPECT_EQ(
        table().preferredTypeForExtension("THING", "public.data"), "mime:application/x-thing");
    EXPECT_TRUE(table().conforms("mime:application/x-thing", "public.data"));
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(TypeTableMimeTest, TheDatabaseTellsNothingOfFolders)
{
    folder.write("system/globs2", "50:application/x-thing:*.thing\n50:application/x-app:*.app\n");

    EXPECT_EQ(table().typeOfFolderNamed("a.thing"), "public.folder");
    EXPECT_EQ(table().typeOfFolderNamed("a.app"), "org.freedesktop.application-bundle");
    EXPECT_EQ(
        table().preferredTypeForExtension("thing", "public.directory"), "dyn.directory.thing");
}

TEST_F(TypeTableMimeTest, TheLongestEndingWins)
{
    folder.write("system/globs2",
        "50:application/gzip:*.gz\n"
        "50:application/x-compressed-tar:*.tar.gz\n"
        "50:application/x-b:*.b\n"
        "50:application/x-ab:*.a.b\n");

    EXPECT_EQ(typeOf("x.tar.gz"), "mime:application/x-compressed-tar");
    EXPECT_EQ(typeOf("x.gz"), "public.gzip-archive");
    EXPECT_EQ(typeOf("x.TAR.GZ"), "mime:application/x-compressed-tar");
    EXPECT_EQ(typeOf("x.a.b"), "mime:application/x-ab");
    EXPECT_EQ(typeOf("x.c.b"), "mime:application/x-b");
}

TEST_F(TypeTableMimeTest, TheGreaterWeightWinsOverTheLongerGlob)
{
    folder.write("system/globs2", "80:application/x-b:*.b\n50:application/x-ab:*.a.b\n");

    EXPECT_EQ(typeOf("x.a.b"), "mime:application/x-b");
}

TEST_F(TypeTableMimeTest, AWholeNameWinsOverEverything)
{
    folder.write("system/globs2",
        "100:application/x-any:*.lists.xyz\n"
        "10:text/x-cmake:CMakeLists.txt\n"
        "10:text/x-makefile:makefile\n");

    EXPECT_EQ(typeOf("CMakeLists.txt"), "mime:text/x-cmake");
    EXPECT_EQ(typeOf("cmakelists.TXT"), "mime:text/x-cmake");
    EXPECT_EQ(typeOf("Makefile"), "mime:text/x-makefile");
    EXPECT_EQ(typeOf("Makefile.txt"), "public.plain-text");
}

TEST_F(TypeTableMimeTest, GeneralGlobsMatchAsAShellsDo)
{
    folder.write("system/globs2",
        "10:text/x-readme:readme*\n"
        "50:text/x-troff:*.[1-9]\n"
        "60:application/x-library:*.so.[0-9]*\n"
        "50:application/x-trash:*~\n"
        "50:video/x-disc:[0-9][0-9].vdr\n");

    EXPECT_EQ(typeOf("README"), "mime:text/x-readme");
    EXPECT_EQ(typeOf("README.first"), "mime:text/x-readme");
    EXPECT_EQ(typeOf("README.html"), "public.html");
    EXPECT_EQ(typeOf("man.7"), "mime:text/x-troff");
    EXPECT_EQ(typeOf("man.0"), "public.data");
    EXPECT_EQ(typeOf("libx.so.7"), "mime:application/x-library");
    EXPECT_EQ(typeOf("libx.so.12.3"), "mime:application/x-library");
    EXPECT_EQ(typeOf("a.txt~"), "mime:application/x-trash");
    EXPECT_EQ(typeOf("01.vdr"), "mime:video/x-disc");
    EXPECT_EQ(typeOf("1.vdr"), "public.data");
}

TEST_F(TypeTableMimeTest, HeedsTheCaseOnlyWhereTheDatabaseSays)
{
    folder.write("system/globs2",
        "50:text/x-upper:*.QQ:cs\n"
        "50:text/x-lower:*.qq\n"
        "50:application/x-core:core:cs\n"
        "50:application/x-other:*.Zz:other,cs:future\n");

    EXPECT_EQ(typeOf("a.QQ"), "mime:text/x-upper");
    EXPECT_EQ(typeOf("a.qq"), "mime:text/x-lower");
    EXPECT_EQ(typeOf("a.Qq"), "mime:text/x-lower");
    EXPECT_EQ(typeOf("core"), "mime:application/x-core");
    EXPECT_EQ(typeOf("CORE"), "public.data");
    EXPECT_EQ(typeOf("a.Zz"), "mime:application/x-other");
    EXPECT_EQ(typeOf("a.zz"), "public.data");
    EXPECT_EQ(table().preferredTypeForExtension("QQ", "public.data"), "mime:text/x-upper");
}

TEST_F(TypeTableMimeTest, ALineRepeatedForOldReadersFoldsNoCase)
{
    folder.write("system/globs2", "50:text/x-genie:*.gs\n50:text/x-genie:*.gs:cs\n");

    EXPECT_EQ(typeOf("a.gs"), "mime:text/x-genie");
    EXPECT_EQ(typeOf("a.GS"), "public.data");
}

TEST_F(TypeTableMimeTest, AmongEqualsTheUserWinsAndThenTheFirstLine)
{
    folder.write("user/globs2", "50:text/x-user:*.one\n");
    folder.write("system/globs2",
        "50:text/x-system:*.one\n"
        "50:text/x-first:*.two\n"
        "50:text/x-second:*.two\n");

    EXPECT_EQ(typeOf("a.one"), "mime:text/x-user");
    EXPECT_EQ(typeOf("a.two"), "mime:text/x-first");
}

TEST_F(TypeTableMimeTest, AMoreImportantDatabaseCanTakeATypesGlobsAway)
{
    folder.write("user/globs2", "0:text/x-t:__NOGLOBS__\n50:text/x-t:*.mine\n");
    folder.write("system/globs2", "50:text/x-t:*.theirs\n50:text/x-u:*.others\n");

    EXPECT_EQ(typeOf("a.mine"), "mime:text/x-t");
    EXPECT_EQ(typeOf("a.theirs"), "public.data");
    EXPECT_EQ(typeOf("a.others"), "mime:text/x-u");
}

TEST_F(TypeTableMimeTest, ALessImportantDatabaseTakesNothingAway)
{
    folder.write("user/globs2", "50:text/x-t:*.mine\n");
    folder.write("system/globs2", "0:text/x-t:__NOGLOBS__\n50:text/x-t:*.theirs\n");

    EXPECT_EQ(typeOf("a.mine"), "mime:text/x-t");
    EXPECT_EQ(typeOf("a.theirs"), "mime:text/x-t");
}

TEST_F(TypeTableMimeTest, OwnExtensionsKeepTheirTypes)
{
    folder.write("user/globs2",
        "100:application/x-mine:*.txt\n"
        "100:application/x-mine:*.jpeg\n"
        "50:image/jpeg:*.jfif\n");

    EXPECT_EQ(typeOf("a.txt"), "public.plain-text");
    EXPECT_EQ(typeOf("a.jpeg"), "public.jpeg");
    EXPECT_EQ(typeOf("a.jfif"), "public.jpeg");
}

TEST_F(TypeTableMimeTest, TypesOfInodesAreForNoFileName)
{
    folder.write("system/globs2",
        "50:inode/x-thing:*.thing\n50:inode/directory:*.dir\n50:x/alias:*.alias\n");
    folder.write("system/aliases", "x/alias inode/directory\n");

    EXPECT_EQ(typeOf("a.thing"), "public.data");
    EXPECT_EQ(typeOf("a.dir"), "public.data");
    EXPECT_EQ(typeOf("a.alias"), "public.data");
    EXPECT_TRUE(table().conforms("mime:inode/x-thing", "public.item"));
    EXPECT_FALSE(table().conforms("mime:inode/x-thing", "public.data"));
}

TEST_F(TypeTableMimeTest, ConformsToWhatTheDatabaseSays)
{
    folder.write("system/subclasses",
        "application/x-child application/x-parent\n"
        "application/x-parent application/zip\n"
        "application/x-child text/x-script\n"
        "inode/x-mount inode/directory\n");
    const auto types = table();

    EXPECT_TRUE(types.conforms("mime:application/x-child", "mime:application/x-parent"));
    EXPECT_TRUE(types.conforms("mime:application/x-child", "mime:application/zip"));
    EXPECT_TRUE(types.conforms("mime:application/x-child", "public.archive"));
    EXPECT_TRUE(types.conforms("mime:application/x-child", "mime:text/plain"));
    EXPECT_TRUE(types.conforms("mime:application/x-child", "public.plain-text"));
    EXPECT_TRUE(types.conforms("mime:application/x-child", "mime:application/octet-stream"));
    EXPECT_TRUE(types.conforms("mime:application/x-child", "public.item"));
    EXPECT_FALSE(types.conforms("mime:application/x-parent", "mime:application/x-child"));
    EXPECT_FALSE(types.conforms("mime:application/x-parent", "public.plain-text"));
    EXPECT_TRUE(types.conforms("mime:inode/x-mount", "public.directory"));
    EXPECT_FALSE(types.conforms("mime:inode/x-mount", "public.data"));
}

TEST_F(TypeTableMimeTest, ListsTheDatabasesTypesBeforeOurOwn)
{
    folder.write("system/subclasses",
        "application/x-child application/x-parent\n"
        "application/x-child text/x-script\n"
        "application/x-parent application/zip\n");

    EXPECT_EQ(table().conformances("MIME:application/x-child"),
        (std::vector<std::string>{ "mime:application/x-child", "mime:application/x-parent",
            "mime:text/x-script", "public.zip-archive", "public.archive", "public.plain-text",
            "public.data", "public.item" }));
}

TEST_F(TypeTableMimeTest, BuiltInTypesAreWhatTheOwnTableSays)
{
    folder.write("user/subclasses", "image/jpeg application/x-mine\ntext/plain image/png\n");

    EXPECT_FALSE(table().conforms("public.jpeg", "mime:application/x-mine"));
    EXPECT_FALSE(table().conforms("public.html", "public.image"));
}

TEST_F(TypeTableMimeTest, AnAliasIsTheTypeThatItStandsFor)
{
    folder.write("system/aliases",
        "application/x-old application/x-new\n"
        "application/x-older application/x-old\n"
        "application/acrobat application/pdf\n");
    folder.write("system/subclasses", "application/x-sub application/x-older\n");
    folder.write("system/globs2", "50:application/x-older:*.old\n50:application/acrobat:*.acro\n");
    const auto types = table();

    EXPECT_EQ(types.typeOfFileNamed("a.old"), "mime:application/x-new");
    EXPECT_EQ(types.typeOfFileNamed("a.acro"), "public.pdf");
    EXPECT_TRUE(types.conforms("mime:application/x-old", "mime:application/x-new"));
    EXPECT_TRUE(types.conforms("mime:application/x-new", "mime:application/x-older"));
    EXPECT_TRUE(types.conforms("mime:application/x-sub", "mime:application/x-new"));
    EXPECT_TRUE(types.conforms("public.pdf", "mime:application/acrobat"));
}

TEST_F(TypeTableMimeTest, ABuiltInTypeIsKnownByTheNameThatItsOwnNameBecameAnAliasOf)
{
    folder.write("system/aliases", "image/png image/x-newer-png\n");
    folder.write("system/globs2", "50:image/x-newer-png:*.apng2\n");

    EXPECT_EQ(typeOf("a.apng2"), "public.png");
    EXPECT_TRUE(table().conforms("mime:image/x-newer-png", "public.png"));
}

TEST_F(TypeTableMimeTest, CirclesEnd)
{
    folder.write("system/aliases", "a/a a/b\na/b a/c\na/c a/a\nb/b b/b\n");
    folder.write("system/subclasses", "x/a x/b\nx/b x/c\nx/c x/a\nx/d x/d\nx/e x/a\n");
    const auto types = table();

    EXPECT_TRUE(types.conforms("mime:x/a", "mime:x/c"));
    EXPECT_TRUE(types.conforms("mime:x/c", "mime:x/b"));
    EXPECT_TRUE(types.conforms("mime:x/e", "mime:x/c"));
    EXPECT_FALSE(types.conforms("mime:x/a", "mime:x/e"));
    EXPECT_TRUE(types.conforms("mime:x/d", "public.data"));
    EXPECT_TRUE(types.conforms("mime:a/a", "public.data"));
}

TEST_F(TypeTableMimeTest, BrokenLinesAreLeftOutWithOneLineInTheLog)
{
    folder.write("system/globs2",
        "no colons at all\n"
        "50:text/x-short\n"
        "x:text/x-weight:*.weight\n"
        "101:text/x-heavy:*.heavy\n"
        "-1:text/x-light:*.light\n"
        "50:noslash:*.noslash\n"
        "50:text/x-empty:\n"
        "50:text/x-good:*.good");
    folder.write("system/subclasses", "alone\ntext/x-good text/x-base\na/b c/d e/f\n");
    folder.write("system/aliases", " a/b\n\n");
    const auto types = table();

    EXPECT_EQ(types.typeOfFileNamed("a.good"), "mime:text/x-good");
    EXPECT_TRUE(types.conforms("mime:text/x-good", "mime:text/x-base"));
    for (const char* name : { "a.weight", "a.heavy", "a.light", "a.noslash" })
        EXPECT_EQ(types.typeOfFileNamed(name), "public.data") << name;
    EXPECT_EQ(log.lines(),
        std::vector{ "MIME database in " + folder.path("system")
            + ": 10 lines left out, files that can't be used: none" });
}

TEST_F(TypeTableMimeTest, MissingFoldersAndFilesAreNoFault)
{
    const zef::TypeTable types({ folder.path("missing"), folder.path("user"), "" });

    EXPECT_EQ(types.typeOfFileNamed("a.txt"), "public.plain-text");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(TypeTableMimeTest, AFifoIsNotWaitedFor)
{
    ASSERT_EQ(::mkfifo(folder.path("user/globs2").c_str(), 0600), 0);
    folder.makeFolder("user/aliases");
    folder.write("user/subclasses", "x/a application/zip\n");

    EXPECT_TRUE(table().conforms("mime:x/a", "public.archive"));
    EXPECT_EQ(log.lines(),
        std::vector{ "MIME database in " + folder.path("user")
            + ": 0 lines left out, files that can't be used: globs2, aliases" });
}

TEST_F(TypeTableMimeTest, AGiganticFileIsNotRead)
{
    makeSparse("user/globs2", off_t{ 1 } << 33);

    EXPECT_EQ(typeOf("a.aaa"), "public.data");
    EXPECT_EQ(log.count("files that can't be used: globs2"), 1u);
}

TEST_F(TypeTableMimeTest, TheLimitOfAFilesSizeIsExact)
{
    constexpr std::size_t limit = 4 << 20;
    std::string text = "50:text/x-a:*.aaa\n";
    text.resize(limit, '#');

    folder.write("user/globs2", text);
    EXPECT_EQ(typeOf("a.aaa"), "mime:text/x-a");
    folder.write("user/globs2", text + '#');
    EXPECT_EQ(typeOf("a.aaa"), "public.data");
}

TEST_F(TypeTableMimeTest, OnlySoManyGlobsAreTriedWithEveryName)
{
    std::string globs;
    for (auto number = 1000; number < 3000; ++number)
        globs += "50:text/x-a:" + std::to_string(number) + "*\n";
    folder.write("system/globs2", globs + "50:text/x-b:*.bbb\n");
    const auto types = table();

    EXPECT_EQ(types.typeOfFileNamed("1999-x"), "mime:text/x-a");
    EXPECT_EQ(types.typeOfFileNamed("2000-x"), "public.data");
    EXPECT_EQ(types.typeOfFileNamed("2000-x.bbb"), "mime:text/x-b");
}

TEST_F(TypeTableMimeTest, AFileMayBeALink)
{
    folder.write("elsewhere", "50:text/x-a:*.aaa\n");
    folder.symlink("../elsewhere", "user/globs2");

    EXPECT_EQ(typeOf("a.aaa"), "mime:text/x-a");
}

TEST_F(TypeTableMimeTest, ALongChainOfSubclassesKeepsTheNearestAndTheRoot)
{
    std::string chain;
    for (auto number = 0; number < 10'000; ++number)
        chain += "x/t" + std::to_string(number) + " x/t" + std::to_string(number + 1) + '\n';
    folder.write("system/subclasses", chain);
    const auto types = table();

    EXPECT_TRUE(types.conforms("mime:x/t0", "mime:x/t1"));
    EXPECT_TRUE(types.conforms("mime:x/t0", "mime:x/t50"));
    EXPECT_FALSE(types.conforms("mime:x/t0", "mime:x/t9999"));
    EXPECT_TRUE(types.conforms("mime:x/t0", "public.item"));
}

TEST_F(TypeTableMimeTest, MoreTypesThanFitAreLeftOut)
{
    std::string globs;
    for (auto number = 0; number < 70'000; ++number)
        globs += "50:x/t" + std::to_string(number) + ":*.e" + std::to_string(number) + '\n';
    folder.write("system/globs2", globs);
    const auto types = table();

    EXPECT_EQ(types.typeOfFileNamed("a.e60000"), "mime:x/t60000");
    EXPECT_EQ(types.typeOfFileNamed("a.e69999"), "public.data");
    EXPECT_EQ(types.typeOfFileNamed("a.pdf"), "public.pdf");
}

} // namespace
