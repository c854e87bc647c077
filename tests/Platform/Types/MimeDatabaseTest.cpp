// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/MimeDatabase.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Globs = std::vector<zef::MimeDatabase::Glob>;
using Pairs = std::vector<zef::MimeDatabase::Pair>;

class MimeDatabaseTest : public testing::Test {
protected:
    zef::MimeDatabase database;
};

TEST_F(MimeDatabaseTest, ReadsGlobsWithTheirWeightsAndFlags)
{
    database.parseGlobs("# comment\n\n50:text/plain:*.txt\r\n0:a/b:x*y:cs\n100:c/d:*.e:f,cs:g:h");

    EXPECT_EQ(database.globs,
        (Globs{ { 50, "text/plain", "*.txt", false }, { 0, "a/b", "x*y", true },
            { 100, "c/d", "*.e", true } }));
    EXPECT_EQ(database.brokenLines, 0u);
}

TEST_F(MimeDatabaseTest, KeepsTypesWithoutOtherGlobsApart)
{
    database.parseGlobs("50:a/b:__NOGLOBS__\n50:a/b:*.ab\n");

    EXPECT_EQ(database.typesWithoutOtherGlobs, std::vector<std::string>{ "a/b" });
    EXPECT_EQ(database.globs, (Globs{ { 50, "a/b", "*.ab", false } }));
}

TEST_F(MimeDatabaseTest, ReadsPairsOfTypes)
{
    database.parseSubclasses("a/b c/d\n# comment\n");
    database.parseAliases("e/f g/h");

    EXPECT_EQ(database.subclasses, (Pairs{ { "a/b", "c/d" } }));
    EXPECT_EQ(database.aliases, (Pairs{ { "e/f", "g/h" } }));
    EXPECT_EQ(database.brokenLines, 0u);
}

TEST_F(MimeDatabaseTest, CountsTheLinesThatItCannotRead)
{
    database.parseGlobs(":::\n50\n50:\n50:a/b\n50:a/b:\n5 0:a/b:c\n50:a b/c:d\n50:/b:c\n50:a/:c\n"
                        "50:a/b/c:d\n50:\xc3\xa4/b:c\n4294967346:a/b:c\n50:a/b:"
        + std::string(256, 'x') + "\n50:a/" + std::string(200, 'b') + ":c");
    database.parseSubclasses("a/b\na/b  c/d\na/b c/d \n");
    database.parseAliases("ab cd");

    EXPECT_TRUE(database.globs.empty());
    EXPECT_TRUE(database.subclasses.empty());
    EXPECT_TRUE(database.aliases.empty());
    EXPECT_EQ(database.brokenLines, 18u);
}

TEST_F(MimeDatabaseTest, LeavesOutGlobsWithAZeroByte)
{
    database.parseGlobs(std::string_view("50:a/b:c\0d", 10));

    EXPECT_TRUE(database.globs.empty());
}

} // namespace
