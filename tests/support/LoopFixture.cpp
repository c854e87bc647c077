// SPDX-License-Identifier: MIT
#include "tests/support/LoopFixture.h"

#include "ZEFFilesystemTools/Platform/Disk/FileSystem.h"
#include "ZEFFilesystemTools/Platform/Time/TimeStamp.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <thread>

namespace {

zef::Stat statOf(const std::string& path)
{
    zef::Stat stat;
    if (const int error = zef::FileSystem::system().statLink(path.c_str(), stat))
        throw std::system_error(error, std::generic_category(), path);
    return stat;
}

} // namespace

LoopFixture::LoopFixture()
{
    zef::Clock::replaceShared(&clock);
    zef::RunLoop::replaceCurrent(&loop);
    ZEFFileManagerTestAccess::forgetInstance();
    folder.makeFolder("watched");
    folder.makeFolder("elsewhere");
    _elsewhere = item("elsewhere");
}

LoopFixture::~LoopFixture()
{
    gate.open();
    ZEFFileManagerTestAccess::forgetInstance();
    ReportingItem::hook = nullptr;
    zef::RunLoop::replaceCurrent(nullptr);
    zef::Clock::replaceShared(nullptr);
    auto lines = log.lines();
    // A file system may give a deleted file's number to the next one at once.
    std::erase_if(lines, [](const std::string& line) {
        return line.starts_with("Error while getting file object ");
    });
    EXPECT_THAT(lines, testing::IsEmpty());
}

void LoopFixture::step(double seconds)
{
    clock.advance(seconds);
    loop.perform();
}

zef::Ref<ZEFFileItem> LoopFixture::item(std::string_view name) const
{
    return ReportingItem::classObject.newFileItemForURL(folder.url(name));
}

RecordingSubscriber& LoopFixture::newSubscriber()
{
    _subscribers.push_back(zef::makeRef<RecordingSubscriber>());
    return *_subscribers.back();
}

void LoopFixture::writeFiles(std::size_t count, std::string_view inFolder)
{
    for (std::size_t number = 0; number < count; ++number) {
        const auto name = std::to_string(1000 + number).substr(1);
        folder.write(std::string(inFolder) + "/" + name, "");
    }
}

void LoopFixture::writeVisibly(std::string_view name)
{
    const auto before = statOf(folder.path(name));
    auto after = before;
    do {
        folder.append(name, "more");
        after = statOf(folder.path(name));
    } while (zef::secondsOfTimeStamp(after.modificationTime)
            == zef::secondsOfTimeStamp(before.modificationTime)
        || zef::secondsOfTimeStamp(after.statusChangeTime)
            == zef::secondsOfTimeStamp(before.statusChangeTime));
}

void LoopFixture::holdReaders()
{
    catalog.beforeBatch = [this, testThread = std::this_thread::get_id()] {
        if (std::this_thread::get_id() != testThread)
            gate.pass();
    };
}

Words LoopFixture::names(const zef::Ref<ZEFFileItemArray>& items)
{
    Words words;
    for (const auto& item : *items)
        words.push_back(nameOf(*item));
    std::sort(words.begin(), words.end());
    return words;
}
