// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Trash/TrashInfoFolder.h"

#include "tests/support/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

class TrashInfoFolderTest : public testing::Test {
protected:
    TrashInfoFolderTest() { ::tzset(); }
    ~TrashInfoFolderTest() override
    {
        zone.unset();
        ::tzset();
    }

    EnvironmentVariable zone{ "TZ", "XXX-5:30" };
    zef::Date date = zef::Date::withSecondsSince1970(86400 - 1800.25);
};

TEST_F(TrashInfoFolderTest, TellsPathAndLocalTime)
{
    EXPECT_EQ(zef::trashInfoText("/home/a/b.txt", date),
        "[Trash Info]\nPath=/home/a/b.txt\nDeletionDate=1970-01-02T04:59:59\n");
}

TEST_F(TrashInfoFolderTest, EncodesWhatCouldBeTakenForSomethingElse)
{
    const auto text = zef::trashInfoText("a b%\n=\xff\u00e4~", date);

    EXPECT_NE(text.find("\nPath=a%20b%25%0A%3D%FF%C3%A4~\n"), std::string::npos) << text;
}

} // namespace
