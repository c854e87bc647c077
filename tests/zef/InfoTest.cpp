// SPDX-License-Identifier: MIT
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ZefProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

#include <sys/stat.h>

namespace {

using JSON = nlohmann::ordered_json;

class InfoTest : public testing::Test {
protected:
    ZefProcess::Result info(const std::string& name, const std::vector<std::string>& options = {})
    {
        std::vector<std::string> arguments{ "info" };
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.push_back(folder.path(name));
        return ZefProcess::run(arguments, {}, { .environment = { { "LC_ALL", "de_DE.UTF-8" } } });
    }

    JSON json(const std::string& name, const std::vector<std::string>& options = { "--json" })
    {
        return JSON::parse(info(name, options).output);
    }

    /// What stands behind `label`; "none" when there is no such line.
    std::string line(const std::string& name, const std::string& label)
    {
        const auto text = info(name).output;
        const auto begin = text.find("\n  " + label + "  ");
        if (begin == std::string::npos)
            return "none";
        return text.substr(
            begin + 1 + valueColumn, text.find('\n', begin + 1) - begin - 1 - valueColumn);
    }

    static std::vector<std::string> names(const JSON& object)
    {
        std::vector<std::string> result;
        for (const auto& entry : object.items())
            result.push_back(entry.key());
        return result;
    }

    static constexpr std::size_t valueColumn = 22;

    TemporaryFolder folder;
};

TEST_F(InfoTest, TellsPeopleOfAFileInAlignedLines)
{
    folder.write("a.txt");
    struct stat status { };
    ASSERT_EQ(::lstat(folder.path("a.txt").c_str(), &status), 0);
    const auto device = json("a.txt")["device"].dump();

    const auto result = info("a.txt");

    EXPECT_EQ(result.output,
        folder.path("a.txt") + "\n"
            + "  name                a.txt\n"
              "  shown as            a.txt\n"
              "  kind                file\n"
              "  type                public.plain-text\n"
              "  conforms to         public.data, public.item\n"
              "  application         no\n"
              "  package             no\n"
              "  hidden              no\n"
              "  device              "
            + device + "\n  inode               " + std::to_string(status.st_ino)
            + "\n  reference           usable: it is found again after a move\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
}

TEST_F(InfoTest, TellsOfFoldersPackagesAndApplications)
{
    folder.makeFolder("sub");
    folder.makeFolder("Tool.app");
    folder.makeFolder("code.bundle");

    EXPECT_EQ(line("sub", "kind"), "folder");
    EXPECT_EQ(line("sub", "type"), "public.folder");
    EXPECT_EQ(line("sub", "conforms to"), "public.directory, public.item");
    EXPECT_EQ(line("Tool.app", "kind"), "package");
    EXPECT_EQ(line("Tool.app", "application"), "yes");
    EXPECT_EQ(line("code.bundle", "package"), "yes");
    EXPECT_EQ(line("code.bundle", "application"), "no");
}

TEST_F(InfoTest, TellsWhereALinkLeads)
{
    folder.makeFolder("sub");
    folder.symlink("sub", "link");

    EXPECT_EQ(line("link", "kind"), "symbolic link");
    EXPECT_EQ(line("link", "type"), "public.symlink");
    EXPECT_EQ(line("link", "target"), folder.path("sub"));
    EXPECT_EQ(line("link", "target kind"), "folder");
    EXPECT_EQ(line("link", "target type"), "public.folder");
    EXPECT_EQ(line("link", "target conforms to"), "public.directory, public.item");
}

TEST_F(InfoTest, TellsThatALinkLeadsNowhere)
{
    folder.symlink("missing", "dangling");
    folder.symlink("loop", "loop");

    for (const auto* name : { "dangling", "loop" }) {
        EXPECT_EQ(line(name, "target"), "none: it leads nowhere") << name;
        EXPECT_EQ(line(name, "target type"), "none") << name;
    }
}

TEST_F(InfoTest, TellsWhereAnAliasLeadsAndShowsItsLocalisedName)
{
    folder.write("a.png");
    folder.write("alias.desktop",
        "[Desktop Entry]\nType=Link\nName=Picture\nName[de]=Bild\nURL=file://"
            + folder.path("a.png") + "\n");

    EXPECT_EQ(line("alias.desktop", "name"), "alias.desktop");
    EXPECT_EQ(line("alias.desktop", "shown as"), "Bild");
    EXPECT_EQ(line("alias.desktop", "kind"), "alias file");
    EXPECT_EQ(line("alias.desktop", "target"), folder.path("a.png"));
    EXPECT_EQ(line("alias.desktop", "target type"), "public.png");
}

TEST_F(InfoTest, TellsWhatIsHidden)
{
    folder.write(".secret");
    folder.write("listed");
    folder.write(".hidden", "listed\n");

    EXPECT_EQ(line(".secret", "hidden"), "yes");
    EXPECT_EQ(line("listed", "hidden"), "yes");
}

TEST_F(InfoTest, TellsOfFilesOneAfterTheOtherWithAnEmptyLineBetween)
{
    folder.write("a");
    folder.write("b");

    const auto text = ZefProcess::run({ "info", folder.path("a"), folder.path("b") }).output;

    EXPECT_EQ(text.rfind(folder.path("a") + "\n  ", 0), 0u);
    EXPECT_NE(text.find("\n\n" + folder.path("b") + "\n  "), std::string::npos);
    EXPECT_EQ(text.find("\n\n"), text.rfind("\n\n"));
}

TEST_F(InfoTest, ShowsControlCharactersEscaped)
{
    folder.write("\x1b[2J\n\xff");

    const auto text = info("\x1b[2J\n\xff").output;

    EXPECT_EQ(text.find('\x1b'), std::string::npos);
    EXPECT_EQ(text.rfind(folder.path("\\x1b[2J\\n\ufffd\n"), 0), 0u) << text;
}

TEST_F(InfoTest, ShowsLessOfPlainItems)
{
    folder.makeFolder("sub");

    const auto text = info("sub", { "--plain" }).output;

    EXPECT_EQ(text.find("type"), std::string::npos);
    EXPECT_NE(text.find("\n  kind                folder"), std::string::npos);
    EXPECT_NE(text.find("\n  reference           usable"), std::string::npos);
}

TEST_F(InfoTest, ColorsTheHeadingOnATerminalAlone)
{
    folder.write("a");
    ZefProcess::Settings settings{ .streams = ZefProcess::Streams::terminal,
        .environment = { { "TERM", "xterm" }, { "NO_COLOR", std::nullopt } } };

    ZefProcess colored({ "info", folder.path("a") }, settings);
    EXPECT_EQ(colored.nextLine(), "\x1b[1m" + folder.path("a") + "\x1b[0m");

    settings.environment["NO_COLOR"] = "";
    ZefProcess sober({ "info", folder.path("a") }, settings);
    EXPECT_EQ(sober.rest().find('\x1b'), std::string::npos);
}

TEST_F(InfoTest, PrintsTheFieldsOfTheItemAndOfItsBasicInfoAsOneObject)
{
    folder.write("a.txt");

    EXPECT_EQ(names(json("a.txt")),
        (std::vector<std::string>{ "id", "class", "url", "path", "device", "inode", "isValid",
            "isBasicDirectory", "isSymlink", "hash", "fileiNodeHash", "refValid", "usingKQueue",
            "description", "fileName", "displayName", "uti", "resolvedUTI", "resolvedURL",
            "resolvedPath", "resolvedFile", "isDirectory", "isPackage", "isApplication", "isAlias",
            "isRealFile", "isInvisible", "isRootDirectory", "isVolumesDirectory" }));
}

TEST_F(InfoTest, PrintsTheFieldsOfAPlainItemAlone)
{
    folder.write("a.txt");

    const auto object = json("a.txt", { "--json", "--plain" });

    EXPECT_EQ(object["class"], "ZEFFileItem");
    EXPECT_EQ(object.size(), 14u);
}

TEST_F(InfoTest, PrintsTheTargetOfALinkAsAnItem)
{
    const auto url = folder.write("a.txt");
    folder.symlink("a.txt", "link");

    const auto object = json("link");

    EXPECT_EQ(object["isRealFile"], false);
    EXPECT_EQ(object["resolvedUTI"], "public.plain-text");
    EXPECT_EQ(object["resolvedURL"], url.absoluteString());
    EXPECT_EQ(object["resolvedPath"], folder.path("a.txt"));
    EXPECT_EQ(object["resolvedFile"]["url"], url.absoluteString());
    EXPECT_EQ(object["resolvedFile"]["class"], "ZEFBasicInfoFileItem");
    EXPECT_NE(object["resolvedFile"]["id"], object["id"]);
}

TEST_F(InfoTest, KnowsTheRoot)
{
    const auto root = JSON::parse(ZefProcess::run({ "info", "--json", "/" }).output);

    EXPECT_EQ(root["isRootDirectory"], true);
    EXPECT_EQ(root["isVolumesDirectory"], false);
    EXPECT_EQ(root["fileName"], "/");
}

TEST_F(InfoTest, HidesTheFolderOfTheHomes)
{
    if (!std::filesystem::is_directory("/home"))
        GTEST_SKIP() << "there is no /home here";

    const auto homes = JSON::parse(ZefProcess::run({ "info", "--json", "/home" }).output);

    EXPECT_EQ(homes["isInvisible"], true);
}

TEST_F(InfoTest, TellsOfEachFileThatIsMissingAndShowsTheRest)
{
    folder.write("a");

    const auto result = ZefProcess::run(
        { "info", "--json", folder.path("missing"), "", folder.path("a") });

    EXPECT_EQ(JSON::parse(result.output)["path"], folder.path("a"));
    EXPECT_EQ(result.errors,
        "zef: " + folder.path("missing")
            + ": No such file or directory\nzef: : No such file or directory\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(InfoTest, WaitsForNobodyAtAPipe)
{
    ASSERT_EQ(::mkfifo(folder.path("pipe.desktop").c_str(), 0600), 0);

    EXPECT_EQ(info("pipe.desktop").status, 0);
}

TEST_F(InfoTest, SaysWhenItsOutputCannotBeWritten)
{
    folder.write("a");
    ZefProcess process({ "info", folder.path("a") }, { .closed = { 1 } });

    EXPECT_EQ(process.status(), 1);
    EXPECT_EQ(process.errorText(), "zef: standard output: Bad file descriptor\n");
}

} // namespace
