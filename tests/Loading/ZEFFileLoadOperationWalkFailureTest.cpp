// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "tests/support/FakeCatalog.h"
#include "tests/support/RecursiveLoadOperationFixture.h"
#include "tests/support/SpyCatalog.h"
#include "tests/support/WithoutPrivileges.h"

#include <functional>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
using zef::makeRef;
using zef::Ref;
using FileError = zef::FileError;

/// Takes every file, after a function of the test's has heard of it.
class TalkingFilter final : public ZEFFileFilter {
public:
    explicit TalkingFilter(std::function<void(const std::string&)> told)
        : _told(std::move(told))
    {
    }

    bool shouldIncludeFile(ZEFFileItem* file) const override
    {
        _told(nameOf(*file));
        return true;
    }

private:
    std::function<void(const std::string&)> _told;
};

/// What stands in a walk's way, or changes under it.
class ZEFFileLoadOperationWalkFailureTest : public RecursiveLoadOperationFixture {
protected:
    static std::string openingFailed(int error, const std::string& url)
    {
        return "ZEFFileLoadOperation encountered error " + std::to_string(error)
            + " opening iterator to get the directory contents at " + url;
    }

    static std::string readingFailed(int error, const std::string& url)
    {
        return "ZEFFileLoadOperation had error " + std::to_string(error)
            + " looping FSGetCatalogInfoBulk for directory " + url;
    }

    /// Calls `told` with the name of each file that the walk would deliver.
    void listen(std::function<void(const std::string&)> told)
    {
        load->setFileFilter(makeRef<TalkingFilter>(std::move(told)));
    }

    /// loaded/a, loaded/sub/b and loaded/z/c.
    void makeTree()
    {
        folder.write("loaded/a");
        folder.makeFolder("loaded/sub");
        folder.write("loaded/sub/b");
        folder.makeFolder("loaded/z");
        folder.write("loaded/z/c");
    }
};

TEST_F(ZEFFileLoadOperationWalkFailureTest, PassesByAFolderThatMayNotBeReadAndLogsNothing)
{
    makeTree();
    folder.chmod("loaded/sub", 0);
    const WithoutPrivileges user;

    EXPECT_THAT(
        walk(), UnorderedElementsAre("loaded/a", "loaded/sub", "loaded/z/c", "loaded/z", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkFailureTest, PassesByTheEntriesOfAFolderThatMayNotBeSearched)
{
    makeTree();
    folder.chmod("loaded/sub", 0400);
    const WithoutPrivileges user;

    EXPECT_THAT(
        walk(), UnorderedElementsAre("loaded/a", "loaded/sub", "loaded/z/c", "loaded/z", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkFailureTest, LogsAFolderThatIsGoneWhenItsTurnComes)
{
    class Remover final : public ZEFDirectoryFilter {
    public:
        explicit Remover(TemporaryFolder& folder)
            : _folder(folder)
        {
        }
        bool shouldIncludeFile(ZEFFileItem* file) const override
        {
            if (nameOf(*file) == "sub")
                _folder.remove("loaded/sub");
            return ZEFDirectoryFilter::shouldIncludeFile(file);
        }

    private:
        TemporaryFolder& _folder;
    };
    makeTree();
    const auto url = folder.folderUrl("loaded/sub").absoluteString();
    load->setDirectoryFilter(makeRef<Remover>(folder));

    EXPECT_THAT(run(), UnorderedElementsAre("a", "sub", "c", "z", "loaded"));
    EXPECT_THAT(takeLog(), ElementsAre(openingFailed(-43, url)));
}

TEST_F(ZEFFileLoadOperationWalkFailureTest, LogsAFolderThatGoesWhileItIsRead)
{
    folder.makeFolder("loaded/sub");
    for (int number = 0; number < 100; ++number)
        folder.write("loaded/sub/" + std::to_string(number));
    const auto url = folder.folderUrl("loaded/sub").absoluteString();
    FakeCatalog catalog;
    catalog.add(loaded->url(), stat("loaded"));
    catalog.addEntry(loaded->url(), "sub", stat("loaded/sub"));
    catalog.addEntry(loaded->url(), "z", stat("loaded/sub/99"));
    catalog.add(folder.folderUrl("loaded/sub"), stat("loaded/sub"));
    for (int number = 0; number < 100; ++number) {
        const auto name = std::to_string(number);
        catalog.addEntry(folder.folderUrl("loaded/sub"), name, stat("loaded/sub/" + name));
    }
    catalog.setReadHook([&](std::size_t reads) {
        if (reads == 1)
            catalog.remove(folder.folderUrl("loaded/sub"));
    });
    walk();

    EXPECT_THAT(load->loadingArray()->count(), 40 + 2 + 1u);
    EXPECT_THAT(takeLog(), ElementsAre(readingFailed(-43, url)));
}

TEST_F(ZEFFileLoadOperationWalkFailureTest, LogsAFolderThatCantBeOpenedAndGoesOn)
{
    makeTree();
    FakeCatalog catalog;
    catalog.add(loaded->url(), stat("loaded"));
    for (const auto* name : { "a", "sub", "z" })
        catalog.addEntry(loaded->url(), name, stat(std::string("loaded/") + name));
    for (const auto* name : { "loaded/sub", "loaded/z" })
        catalog.add(folder.folderUrl(name), stat(name));
    catalog.addEntry(folder.folderUrl("loaded/z"), "c", stat("loaded/z/c"));
    catalog.setOpenResult(folder.folderUrl("loaded/sub"), FileError::io);

    EXPECT_THAT(walk(), ElementsAre("loaded/z/c", "loaded/a", "loaded/sub", "loaded/z", "loaded"));
    EXPECT_THAT(takeLog(),
        ElementsAre(openingFailed(-36, folder.folderUrl("loaded/sub").absoluteString())));
}

TEST_F(ZEFFileLoadOperationWalkFailureTest, LogsAFileItBeginsWithThatIsLostAndDeliversIt)
{
    folder.makeFolder("lost");
    begin({ "lost", "loaded" });
    const auto lost = item("lost");
    folder.remove("lost");
    load->start();

    ASSERT_EQ(load->loadingArray()->count(), 2u);
    EXPECT_EQ(load->loadingArray()->objectAtIndex(0), lost.get());
    EXPECT_THAT(takeLog(), ElementsAre(openingFailed(-1401, "(null)")));
}

// A socket's mode has the bit of folders.
TEST_F(ZEFFileLoadOperationWalkFailureTest, LogsASocketWhichPassesForAFolder)
{
    makeTree();
    const auto path = folder.path("loaded/socket");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof(address.sun_path));
    path.copy(address.sun_path, path.size());
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ::close(descriptor);

    EXPECT_THAT(walk(), SizeIs(7));
    EXPECT_THAT(
        takeLog(), ElementsAre(openingFailed(-1407, folder.url("loaded/socket").absoluteString())));
}

TEST_F(ZEFFileLoadOperationWalkFailureTest, TakesNamesOfAnyBytesOnItsWay)
{
    folder.makeFolder("loaded/new\nline");
    folder.makeFolder("loaded/new\nline/\xff\xfe");
    folder.makeFolder("loaded/new\nline/\xff\xfe/ 100%");
    folder.write("loaded/new\nline/\xff\xfe/ 100%/file");

    EXPECT_THAT(walk(), Contains("loaded/new\nline/\xff\xfe/ 100%/file"));
}

// --- Trees that change

TEST_F(ZEFFileLoadOperationWalkFailureTest, FindsEverythingInAFolderThatIsMovedMeanwhile)
{
    std::string path = "loaded";
    for (int level = 0; level < 5; ++level) {
        path += "/" + std::to_string(level);
        folder.makeFolder(path);
        for (int number = 0; number < 50; ++number)
            folder.write(path + "/file" + std::to_string(number), "");
    }
    folder.write(path + "/deepest");
    listen([&](const std::string& name) {
        if (name == "deepest")
            folder.rename("loaded", "moved");
    });
    load->start();

    EXPECT_EQ(load->loadingArray()->count(), 5u * 51 + 2);
}

TEST_F(ZEFFileLoadOperationWalkFailureTest, EndsWhenAllThatItWalksGoes)
{
    std::string path = "loaded";
    for (int level = 0; level < 20; ++level) {
        path += "/" + std::to_string(level);
        folder.makeFolder(path);
        folder.write(path + "/file");
    }
    folder.write(path + "/deepest");
    listen([&](const std::string& name) {
        if (name == "deepest")
            folder.remove("loaded");
    });
    load->start();
    takeLog();

    EXPECT_TRUE(load->isFinished());
    EXPECT_EQ(load->loadingArray()->objectAtIndex(load->loadingArray()->count() - 1), loaded.get());
}

TEST_F(ZEFFileLoadOperationWalkFailureTest, FindsEverythingInAFolderThatIsMovedOnceItIsDeepInside)
{
    std::string path = "loaded";
    for (int level = 0; level < 20; ++level) {
        path += "/" + std::to_string(level);
        folder.makeFolder(path);
        for (int number = 0; number < 50; ++number)
            folder.write(path + "/file" + std::to_string(number), "");
    }
    folder.write(path + "/deepest");
    const auto parent = item("."); // keeps the way to it
    listen([&](const std::string& name) {
        if (name == "deepest")
            folder.rename("loaded", "moved");
    });
    load->start();

    EXPECT_EQ(load->loadingArray()->count(), 20u * 51 + 2);
}

} // namespace
