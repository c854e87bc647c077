// SPDX-License-Identifier: MIT
#include "tests/support/ArchiveFixture.h"

#include <sys/stat.h>

namespace {

struct Fate {
    std::string name;
    /// The name afterwards; empty when the file is gone.
    std::string nameNow;
};

/// Twenty-two files of many kinds, and what becomes of each.
std::vector<Fate> fates()
{
    return {
        { "report.txt", "summary.txt" },
        { "photo.png", "other/photo.png" },
        { "docs", "papers" },
        { "docs/deep/note.md", "papers/deep/note.md" },
        { "Tool.app", "Renamed.app" },
        { "link", "link" },
        { "dangling", "dangling" },
        { "shortcut.desktop", "shortcut.desktop" },
        { "saved.txt", "saved.txt" },
        { "deleted.txt", "" },
        { "deleted", "" },
        { "moved link", "" },
        { "new\nline", "newer\nline" },
        { "bad\xff\xfe", "other/worse\xff" },
        { "bad\xfflink", "bad\xfflink" },
        { "one name", "other/another name" },
        { "pipe", "old pipe" },
        { "program.desktop", "game.desktop" },
        { ".secret", "known" },
        { "left", "right" },
        { "right", "left" },
        { std::string(255, 'n'), std::string(255, 'm') },
    };
}

class ResolveTest : public ArchiveFixture, public testing::WithParamInterface<bool> {
protected:
    ResolveTest() { settings.withoutPrivileges = GetParam(); }

    void makeFiles()
    {
        for (const auto* name : { "docs", "docs/deep", "Tool.app", "deleted", "other" })
            folder.makeFolder(name);
        for (const auto* name :
            { "report.txt", "photo.png", "docs/deep/note.md", "saved.txt", "deleted.txt",
                "new\nline", "bad\xff\xfe", "one name", ".secret", "left", "right" })
            folder.write(name);
        folder.write(std::string(255, 'n'));
        folder.symlink("report.txt", "link");
        folder.symlink("nowhere", "dangling");
        folder.symlink("report.txt", "moved link");
        folder.symlink("docs", "bad\xfflink");
        folder.write("shortcut.desktop",
            "[Desktop Entry]\nType=Link\nName=Docs\nURL=file://" + folder.path("docs") + "\n");
        folder.write("program.desktop", "[Desktop Entry]\nType=Application\nExec=true\n");
        ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    }

    void shuffleFiles()
    {
        folder.rename("report.txt", "summary.txt");
        folder.rename("photo.png", "other/photo.png");
        folder.rename("docs", "papers");
        folder.rename("Tool.app", "Renamed.app");
        folder.write("saved.txt~", "as editors save");
        folder.rename("saved.txt~", "saved.txt");
        folder.remove("deleted.txt");
        folder.remove("deleted");
        folder.rename("moved link", "link that was moved");
        folder.rename("new\nline", "newer\nline");
        folder.rename("bad\xff\xfe", "other/worse\xff");
        folder.link("one name", "other/another name");
        folder.remove("one name");
        folder.rename("pipe", "old pipe");
        folder.rename("program.desktop", "game.desktop");
        folder.rename(".secret", "known");
        folder.exchange("left", "right");
        folder.rename(std::string(255, 'n'), std::string(255, 'm'));
    }

    std::string archiveOfAllFiles()
    {
        Names names;
        for (const auto& fate : fates())
            names.push_back(fate.name);
        const auto result = archive(names);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "");
        return result.output;
    }

    /// Whether `item` is the file with this name.
    bool isItem(const JSON& item, const std::string& name)
    {
        struct stat info { };
        auto url = item["url"].get<std::string>();
        if (url.back() == '/')
            url.pop_back();
        return ::lstat(folder.path(name).c_str(), &info) == 0 && item["inode"] == info.st_ino
            && url == folder.url(name).absoluteString() && item["isValid"] == true;
    }
};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutPrivileges, ResolveTest, testing::Bool(),
    [](const auto& parameter) { return parameter.param ? "WithoutPrivileges" : "WithPrivileges"; });

TEST_P(ResolveTest, FindsFilesOfManyKindsInALaterRun)
{
    makeFiles();
    const auto archives = archiveOfAllFiles();
    shuffleFiles();

    const auto result = resolve(archives, { "--json" });

    const auto items = objects(result.output);
    std::size_t index = 0;
    for (const auto& fate : fates()) {
        if (fate.nameNow.empty())
            continue;
        ASSERT_LT(index, items.size());
        EXPECT_TRUE(isItem(items[index], fate.nameNow)) << fate.nameNow << ": " << items[index];
        EXPECT_EQ(items[index]["class"], "ZEFBasicInfoFileItem");
        ++index;
    }
    EXPECT_EQ(index, items.size());
}

TEST_P(ResolveTest, TellsWhichFilesAreGone)
{
    makeFiles();
    const auto archives = archiveOfAllFiles();
    shuffleFiles();

    const auto result = resolve(archives);

    EXPECT_EQ(lines(result.output).size(), 19u);
    EXPECT_EQ(result.errors,
        "zef: " + folder.path("deleted.txt") + ": the file is gone\nzef: " + folder.path("deleted")
            + ": the file is gone\nzef: " + folder.path("moved link") + ": the file is gone\n");
    EXPECT_EQ(result.status, 1);
}

TEST_P(ResolveTest, PrintsForPeopleThePathOfEachFileFitForATerminal)
{
    makeFiles();
    const auto archives = archive({ "new\nline", "bad\xff\xfe", "report.txt" }).output;
    shuffleFiles();

    const auto result = resolve(archives);

    EXPECT_EQ(lines(result.output),
        (Names{ folder.path("newer\\nline"), folder.path("other/worse\ufffd"),
            folder.path("summary.txt") }));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
}

TEST_P(ResolveTest, FindsPlainItemsByTheirReferencesAlone)
{
    makeFiles();
    const auto archives
        = ZefProcess::run({ "archive", "--plain", folder.path("moved link") }, {}, settings).output;
    shuffleFiles();

    const auto items = objects(resolve(archives, { "--json", "--plain" }).output);

    ASSERT_EQ(items.size(), 1u);
    EXPECT_TRUE(isItem(items[0], "link that was moved")) << items[0];
    EXPECT_EQ(items[0]["class"], "ZEFFileItem");
}

TEST_P(ResolveTest, FindsEverythingWhereItWasWhenNothingHappened)
{
    makeFiles();

    const auto items = objects(resolve(archiveOfAllFiles(), { "--json" }).output);

    ASSERT_EQ(items.size(), fates().size());
    for (std::size_t index = 0; index < items.size(); ++index)
        EXPECT_TRUE(isItem(items[index], fates()[index].name)) << items[index];
}

} // namespace
