// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/MimeDatabase.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace {

using Folders = std::vector<std::string>;

/// Runs with an environment of its own, without any of the variables at first.
class MimeDatabaseFoldersTest : public testing::Test {
protected:
    MimeDatabaseFoldersTest()
    {
        for (auto& variable : _variables) {
            if (const auto* value = ::getenv(variable.name))
                variable.value = value;
            ::unsetenv(variable.name);
        }
    }

    ~MimeDatabaseFoldersTest() override
    {
        for (const auto& variable : _variables) {
            ::unsetenv(variable.name);
            if (variable.value)
                ::setenv(variable.name, variable.value->c_str(), 1);
        }
    }

private:
    struct Variable {
        const char* name;
        std::optional<std::string> value;
    };

    std::vector<Variable> _variables{ { "HOME", {} }, { "XDG_DATA_HOME", {} },
        { "XDG_DATA_DIRS", {} } };
};

TEST_F(MimeDatabaseFoldersTest, TakesTheUsersFolderFirstAndThenTheSystems)
{
    ::setenv("XDG_DATA_HOME", "/user/", 1);
    ::setenv("XDG_DATA_DIRS", "/one:/two//:/", 1);

    EXPECT_EQ(
        zef::MimeDatabase::folders(), (Folders{ "/user/mime", "/one/mime", "/two/mime", "/mime" }));
}

TEST_F(MimeDatabaseFoldersTest, HasTheUsualFoldersWhereNothingIsSet)
{
    ::setenv("HOME", "/home/somebody", 1);
    ::setenv("XDG_DATA_DIRS", "", 1);

    EXPECT_EQ(zef::MimeDatabase::folders(),
        (Folders{
            "/home/somebody/.local/share/mime", "/usr/local/share/mime", "/usr/share/mime" }));
}

TEST_F(MimeDatabaseFoldersTest, LeavesOutRelativeAndRepeatedFolders)
{
    ::setenv("HOME", "/home/somebody", 1);
    ::setenv("XDG_DATA_HOME", "relative", 1);
    ::setenv("XDG_DATA_DIRS", "one::/two:../three:/two/", 1);

    EXPECT_EQ(
        zef::MimeDatabase::folders(), (Folders{ "/home/somebody/.local/share/mime", "/two/mime" }));
}

TEST_F(MimeDatabaseFoldersTest, AsksTheUserDatabaseForAHomeThatIsNotSet)
{
    const auto* user = ::getpwuid(::geteuid());
    if (!user || user->pw_dir[0] != '/')
        GTEST_SKIP() << "the user database has no home for this user";

    EXPECT_EQ(
        zef::MimeDatabase::folders().front(), std::string(user->pw_dir) + "/.local/share/mime");
}

} // namespace
