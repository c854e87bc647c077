// SPDX-License-Identifier: MIT
#include "tests/support/ArchiveFixture.h"

#include <unistd.h>

namespace {

class ArchiveTest : public ArchiveFixture { };

TEST_F(ArchiveTest, PrintsOneObjectALineForEachFileInOrder)
{
    folder.write("a");
    folder.makeFolder("b");

    const auto result = archive({ "b", "a" });

    const auto archives = objects(result.output);
    ASSERT_EQ(archives.size(), 2u);
    EXPECT_EQ(archives[0]["ZEFArchivePathKey"], folder.path("b"));
    EXPECT_EQ(archives[1]["ZEFArchivePathKey"], folder.path("a"));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
}

TEST_F(ArchiveTest, HoldsDataInBase64APathAndWhetherItIsAnAlias)
{
    folder.write("a");
    folder.symlink("a", "link");
    folder.write("alias.desktop", "[Desktop Entry]\nType=Link\nURL=file:///tmp\n");

    const auto archives = objects(archive({ "a", "link", "alias.desktop" }).output);

    ASSERT_EQ(archives.size(), 3u);
    for (const auto& one : archives) {
        EXPECT_EQ(one.size(), 3u);
        const auto data = one["ZEFArchiveDataKey"].get<std::string>();
        EXPECT_EQ(data.find_first_not_of(
                      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/="),
            std::string::npos);
        EXPECT_EQ(data.size() % 4, 0u);
        EXPECT_GT(data.size(), 0u);
    }
    EXPECT_EQ(archives[0]["ZEFArchiveIsAliasKey"], false);
    EXPECT_EQ(archives[1]["ZEFArchiveIsAliasKey"], true);
    EXPECT_EQ(archives[2]["ZEFArchiveIsAliasKey"], true);
}

TEST_F(ArchiveTest, SaysNothingOfAliasesForPlainItems)
{
    folder.symlink("a", "link");

    const auto result = ZefProcess::run({ "archive", "--plain", folder.path("link") });

    const auto archives = objects(result.output);
    ASSERT_EQ(archives.size(), 1u);
    EXPECT_EQ(archives[0].size(), 2u);
    EXPECT_FALSE(archives[0].contains("ZEFArchiveIsAliasKey"));
}

TEST_F(ArchiveTest, WritesAPathThatIsNoTextOnceMoreAsAUrl)
{
    const std::string name = "a\xff\n";
    const auto url = folder.write(name);

    const auto archives = objects(archive({ name }).output);

    ASSERT_EQ(archives.size(), 1u);
    EXPECT_EQ(archives[0]["ZEFArchivePathKey"], folder.path("a\ufffd\n"));
    EXPECT_EQ(archives[0]["ZEFArchivePathURL"], url.absoluteString());
}

TEST_F(ArchiveTest, TellsOfEachFileThatIsMissingAndArchivesTheRest)
{
    folder.write("a");

    const auto result = archive({ "missing", "a", "a/inside", "a/" });

    EXPECT_EQ(objects(result.output).size(), 1u);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
        "zef: " + folder.path("missing")
            + ": No such file or directory\nzef: " + folder.path("a/inside")
            + ": Not a directory\nzef: " + folder.path("a/") + ": Not a directory\n");
}

TEST_F(ArchiveTest, ArchivesALinkItselfUnlessASlashAsksForItsFolder)
{
    folder.makeFolder("sub");
    folder.symlink("sub", "link");

    const auto archives = objects(archive({ "link", "link/" }).output);

    ASSERT_EQ(archives.size(), 2u);
    EXPECT_EQ(archives[0]["ZEFArchivePathKey"], folder.path("link"));
    EXPECT_EQ(archives[1]["ZEFArchivePathKey"], folder.path("sub"));
}

TEST_F(ArchiveTest, KeepsNoDotsInPaths)
{
    folder.makeFolder("sub");
    folder.write("a");
    settings.folder = folder.path("sub");

    const auto result = ZefProcess::run(
        { "archive", "../a", ".", "..", "./../sub/../a", "./" }, {}, settings);

    std::vector<std::string> paths;
    for (const auto& one : objects(result.output))
        paths.push_back(one["ZEFArchivePathKey"]);
    EXPECT_EQ(paths,
        (Names{ folder.path("a"), folder.path("sub"), folder.path(), folder.path("a"),
            folder.path("sub") }));
}

TEST_F(ArchiveTest, EndsQuietlyWhenNobodyReads)
{
    folder.write("a");
    Names arguments{ "archive" };
    arguments.resize(2000, folder.path("a"));
    ZefProcess process(arguments);

    EXPECT_TRUE(process.nextLine());
    process.closeOutput();

    EXPECT_EQ(process.status(), 0);
    EXPECT_EQ(process.errorText(), "");
}

TEST_F(ArchiveTest, NeedsAPath)
{
    const auto result = ZefProcess::run({ "archive" });

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors.find("PATH"), std::string::npos);
}

} // namespace
