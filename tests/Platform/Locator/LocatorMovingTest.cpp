// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"

#include "tests/support/LocatorFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Renames a file just before somebody looks at it, as if another program were that quick.
class MovingFileSystem final : public zef::FileSystem {
public:
    MovingFileSystem(TemporaryFolder& folder, std::string name)
        : _folder(folder)
        , _name(std::move(name))
    {
        replaceShared(this);
    }
    ~MovingFileSystem() override { replaceShared(nullptr); }
    MovingFileSystem(const MovingFileSystem&) = delete;
    MovingFileSystem& operator=(const MovingFileSystem&) = delete;

    void setMovesLeft(int moves) { _movesLeft = moves; }
    zef::FileURL url() const { return _folder.url(_name); }

    int statLink(const char* path, zef::Stat& stat) override
    {
        if (_movesLeft > 0 && path == _folder.path(_name)) {
            --_movesLeft;
            const auto next = _name + "+";
            _folder.rename(_name, next);
            _name = next;
        }
        return system().statLink(path, stat);
    }
    bool exists(const char* path) override { return system().exists(path); }
    zef::FileHandle handle(const char* path) override { return system().handle(path); }

private:
    TemporaryFolder& _folder;
    std::string _name;
    int _movesLeft = 0;
};

class LocatorMovingTest : public LocatorFixture { };

INSTANTIATE_TEST_SUITE_P(
    , LocatorMovingTest, testing::ValuesIn(locatorCircumstances()), nameOfCircumstance);

TEST_P(LocatorMovingTest, FindsAFileThatIsRenamedWhileItIsLookedFor)
{
    const auto file = track(folder.write("file"));
    MovingFileSystem files(folder, "file");
    files.setMovesLeft(3);

    const auto found = locate(file);
    EXPECT_EQ(found, files.url());
}

TEST_P(LocatorMovingTest, GivesUpAFileThatIsAlwaysElsewhere)
{
    const auto file = track(folder.write("file"));
    MovingFileSystem files(folder, "file");
    files.setMovesLeft(200);

    EXPECT_FALSE(locate(file));
    files.setMovesLeft(0);
    EXPECT_EQ(locate(file), files.url());
}

} // namespace
