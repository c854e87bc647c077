// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Loading/ZEFFileLoadOperation.h"

#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"
#include "ZEFFilesystemTools/Loading/ZEFFilters.h"

#include "tests/support/RecursiveLoadOperationFixture.h"

#include <filesystem>

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using zef::makeRef;
using zef::Ref;

/// Follows symbolic links to folders.
class LinkFilter final : public ZEFDirectoryFilter {
public:
    bool shouldIncludeFile(ZEFFileItem* file) const override
    {
        return std::filesystem::is_directory(file->url().path());
    }

    Ref<ZEFFileItem> trueDirectoryObjectForFile(ZEFFileItem* file) const override
    {
        const auto path = std::filesystem::canonical(file->url().path()).string();
        return ReportingItem::classObject.newFileItemForPath(path);
    }
};

/// Walks folders with links in them, by filters that follow them.
class ZEFFileLoadOperationWalkLinkTest : public RecursiveLoadOperationFixture { };

TEST_F(ZEFFileLoadOperationWalkLinkTest, DoesNotFollowLinksByItself)
{
    folder.makeFolder("other");
    folder.write("other/file");
    folder.symlink("../other", "loaded/link");

    EXPECT_THAT(walk(), ElementsAre("loaded/link", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkLinkTest, FindsFilesWhereTheTargetOfALinkIs)
{
    folder.makeFolder("other");
    folder.write("other/file");
    folder.symlink("../other", "loaded/link");
    load->setDirectoryFilter(makeRef<LinkFilter>());

    EXPECT_THAT(walk(), ElementsAre("other/file", "loaded/link", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkLinkTest, BeginsWithTheTargetOfALink)
{
    folder.write("loaded/a");
    folder.symlink("loaded", "link");
    load->setDirectoryFilter(makeRef<LinkFilter>());
    begin({ "link" });

    EXPECT_THAT(walk(), ElementsAre("loaded/a", "link"));
}

TEST_F(ZEFFileLoadOperationWalkLinkTest, ListsTheTargetOfSeveralLinksOnce)
{
    folder.makeFolder("loaded/sub");
    folder.write("loaded/sub/a");
    folder.symlink("sub", "loaded/one");
    folder.symlink("sub", "loaded/two");
    load->setDirectoryFilter(makeRef<LinkFilter>());

    EXPECT_THAT(walk(),
        UnorderedElementsAre("loaded/sub/a", "loaded/sub", "loaded/one", "loaded/two", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkLinkTest, EndsInCyclesOfLinks)
{
    folder.makeFolder("loaded/sub");
    folder.symlink("..", "loaded/sub/up");
    folder.symlink(".", "loaded/self");
    folder.makeFolder("other");
    folder.symlink("../other", "loaded/there");
    folder.symlink("../loaded", "other/back");
    load->setDirectoryFilter(makeRef<LinkFilter>());

    EXPECT_THAT(walk(),
        UnorderedElementsAre(
            "loaded/sub/up", "loaded/sub", "loaded/self", "other/back", "loaded/there", "loaded"));
}

TEST_F(ZEFFileLoadOperationWalkLinkTest, FollowsLinksWithTheNormalFilterAndLeavesHiddenFoldersAlone)
{
    folder.makeFolder("loaded/.hidden");
    folder.write("loaded/.hidden/a");
    folder.makeFolder("other");
    folder.write("other/file");
    folder.symlink("../other", "loaded/link");
    loaded = nullptr;
    load->setLoadingDirectory(nullptr);
    load->setFilesToIterate(nullptr);
    auto files = makeRef<ZEFFileItemArray>();
    files->addObject(ZEFBasicInfoFileItem::classObject.newFileItemForURL(folder.url("loaded")));
    load->setFilesToIterate(files.get());
    load->setDirectoryFilter(ZEFNormalDirectoryFilter::filter());

    EXPECT_THAT(
        walk(), UnorderedElementsAre("other/file", "loaded/link", "loaded/.hidden", "loaded"));
}

} // namespace
