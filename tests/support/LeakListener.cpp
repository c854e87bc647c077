// SPDX-License-Identifier: MIT

// Fails each test that leaves more open descriptors or more registered file items behind than it
// found. It needs no header: to be linked in is enough.

#include "ZEFFilesystemTools/FileItems/ZEFFileRegistry.h"
#include "ZEFFilesystemTools/FileItems/ZEFFileTable.h"
#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Locator/Locator.h"
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"

#include "tests/support/FakeFileSystem.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <system_error>

namespace {

// What each descriptor leads to.
std::map<std::string, std::string> openDescriptors()
{
    std::map<std::string, std::string> result;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
        const auto target = std::filesystem::read_symlink(entry.path(), error);
        if (!error) // the iterator's own is closed by the time it would be read
            result[entry.path().filename()] = target;
    }
    return result;
}

// The devices that tests make items on: the disk's, the memory's and the one that is made up.
std::set<std::uint32_t> devicesOfTests()
{
    std::set<std::uint32_t> devices{ FakeFileSystem::deviceNumber };
    const char* folder = std::getenv("ZEF_TEST_FOLDER");
    for (const auto* path : { folder ? folder : "/tmp", "/dev/shm" }) {
        zef::Stat stat;
        if (zef::FileSystem::system().statLink(path, stat) == 0)
            devices.insert(stat.device);
    }
    return devices;
}

std::size_t registeredItems()
{
    static const auto devices = devicesOfTests();
    const ZEFFileRegistry::Guard guard;
    std::size_t count = 0;
    for (const auto device : devices) {
        if (const auto* table = ZEFFileRegistry::table(device))
            count += table->count();
    }
    return count;
}

class LeakListener final : public testing::EmptyTestEventListener {
public:
    // What the process keeps for good is there before the first test counts.
    void OnEnvironmentsSetUpEnd(const testing::UnitTest&) override
    {
        zef::RunLoop::current().descriptor();
        zef::ChangeNotifier::system().createQueue();
    }

    void OnTestStart(const testing::TestInfo&) override
    {
        _descriptors = openDescriptors();
        _items = registeredItems();
        _heldDescriptors = zef::Locator::system().heldDescriptorCount();
    }

    void OnTestEnd(const testing::TestInfo& test) override
    {
        const auto descriptors = openDescriptors();
        if (descriptors.size() > _descriptors.size())
            ADD_FAILURE() << test.name() << " left descriptors open:" << added(descriptors);
        EXPECT_LE(zef::Locator::system().heldDescriptorCount(), _heldDescriptors)
            << test.name() << " left descriptors of the locator's in use";
        EXPECT_LE(registeredItems(), _items) << test.name() << " left file items alive";
    }

private:
    std::string added(const std::map<std::string, std::string>& descriptors) const
    {
        std::string text;
        for (const auto& [number, target] : descriptors) {
            const auto before = _descriptors.find(number);
            if (before == _descriptors.end() || before->second != target)
                text.append(" ").append(number).append(" -> ").append(target);
        }
        return text;
    }

    std::map<std::string, std::string> _descriptors;
    std::size_t _items = 0;
    std::size_t _heldDescriptors = 0;
};

[[maybe_unused]] const bool isListening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
    return true;
}();

} // namespace
