// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/LinuxLocator.h"

#include "tests/support/FakeLocator.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

// What every locator promises, the one that tests script included.

namespace {

// Real files and the locator that looks for them.
class RealWorld {
public:
    zef::Locator& locator() { return _locator; }

    zef::FileURL addFile(const std::string& name) { return _folder.write(name); }
    zef::FileURL addFolder(const std::string& name) { return _folder.makeFolder(name); }
    zef::FileURL rename(const zef::FSRef&, const std::string& from, const std::string& to)
    {
        return _folder.rename(from, to);
    }
    void remove(const zef::FSRef&, const std::string& name) { _folder.remove(name); }

    zef::Stat stat(const zef::FileURL& url)
    {
        zef::Stat result;
        zef::FileSystem::system().statLink(url.path().c_str(), result);
        return result;
    }

private:
    TemporaryFolder _folder;
    zef::LinuxLocator _locator;
};

// Files that aren't there, and the locator that is told where they would be.
class ScriptedWorld {
public:
    zef::Locator& locator() { return _locator; }

    zef::FileURL addFile(const std::string& name) { return add(name, zef::URLKind::file); }
    zef::FileURL addFolder(const std::string& name) { return add(name, zef::URLKind::folder); }
    zef::FileURL rename(const zef::FSRef& ref, const std::string&, const std::string& to)
    {
        const auto kind = ref.isFolder() ? zef::URLKind::folder : zef::URLKind::file;
        auto url = zef::FileURL::fromPath("/" + to, kind);
        _locator.setPlace(ref, url);
        return url;
    }
    void remove(const zef::FSRef& ref, const std::string&) { _locator.setPlace(ref, nullptr); }

    zef::Stat stat(const zef::FileURL& url)
    {
        zef::Stat result;
        result.inode = std::hash<std::string>()(url.path());
        result.mode = url.hasDirectoryPath() ? 0040755 : 0100644;
        return result;
    }

private:
    zef::FileURL add(const std::string& name, zef::URLKind kind)
    {
        auto url = zef::FileURL::fromPath("/" + name, kind);
        _locator.setPlace(zef::FSRef(stat(url)), url);
        return url;
    }

    FakeLocator _locator;
};

template <typename World> class LocatorContractTest : public testing::Test {
protected:
    zef::FSRef makeRef(const zef::FileURL& url)
    {
        zef::FSRef ref;
        EXPECT_TRUE(locator.makeRef(url, world.stat(url), ref));
        return ref;
    }

    World world;
    zef::Locator& locator = world.locator();
};

using Worlds = testing::Types<RealWorld, ScriptedWorld>;
TYPED_TEST_SUITE(LocatorContractTest, Worlds);

TYPED_TEST(LocatorContractTest, MakesReferencesToObjects)
{
    const auto url = this->world.addFile("file");
    const auto ref = this->makeRef(url);

    EXPECT_TRUE(ref.hasNumbersOf(this->world.stat(url)));
}

TYPED_TEST(LocatorContractTest, LeavesTheReferenceAloneWhenThereCanBeNone)
{
    zef::FSRef ref;

    EXPECT_FALSE(this->locator.makeRef(nullptr, {}, ref));
    EXPECT_TRUE(ref.isEmpty());
}

TYPED_TEST(LocatorContractTest, FindsAnObjectThatWasRenamed)
{
    const auto url = this->world.addFile("before");
    auto ref = this->makeRef(url);
    this->locator.retain(ref, url);
    const auto renamed = this->world.rename(ref, "before", "after");

    EXPECT_EQ(this->locator.locate(ref, url), renamed);
    this->locator.release(ref);
}

TYPED_TEST(LocatorContractTest, FindsAnObjectThatNobodyRetains)
{
    const auto url = this->world.addFile("file");

    EXPECT_EQ(this->locator.locate(this->makeRef(url), url), url);
}

TYPED_TEST(LocatorContractTest, DoesNotFindAnObjectThatIsGone)
{
    const auto url = this->world.addFile("file");
    auto ref = this->makeRef(url);
    this->locator.retain(ref, url);
    this->world.remove(ref, "file");

    EXPECT_FALSE(this->locator.locate(ref, url));
    this->locator.release(ref);
}

TYPED_TEST(LocatorContractTest, EndsTheURLsOfFoldersInASlashAndNoOthers)
{
    const auto file = this->world.addFile("a file");
    const auto folder = this->world.addFolder("folder");
    const auto fileRef = this->makeRef(file);
    const auto folderRef = this->makeRef(folder);

    EXPECT_EQ(this->locator.locate(fileRef, file.withKind(zef::URLKind::folder)), file);
    EXPECT_EQ(this->locator.locate(folderRef, folder.withKind(zef::URLKind::file)), folder);
}

TYPED_TEST(LocatorContractTest, FindsNothingForAnEmptyReference)
{
    zef::FSRef empty;
    const auto url = this->world.addFile("file");
    this->locator.retain(empty, url);

    EXPECT_FALSE(this->locator.locate(empty, url));
    this->locator.release(empty);
}

TYPED_TEST(LocatorContractTest, KeepsTheBudgetThatItIsGiven)
{
    this->locator.setDescriptorBudget(12);

    EXPECT_EQ(this->locator.descriptorBudget(), 12u);
}

TYPED_TEST(LocatorContractTest, GivesBackNoDescriptorWhenItHoldsNone)
{
    EXPECT_EQ(this->locator.heldDescriptorCount(), 0u);
    EXPECT_FALSE(this->locator.giveBackOneDescriptor());
}

} // namespace
