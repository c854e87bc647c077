// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/BasicInfo/ZEFBasicInfoFileItem.h"

#include "ZEFFilesystemTools/Platform/Presentation/FileInformation.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace {

constexpr int rounds = 2000;

// Does something while a question about a type is under way, once.
class InterruptedInformation final : public zef::FileInformation {
public:
    explicit InterruptedInformation(std::function<void()> interruption)
        : _interruption(std::move(interruption))
    {
        replaceShared(this);
    }
    ~InterruptedInformation() override { replaceShared(nullptr); }
    InterruptedInformation(const InterruptedInformation&) = delete;
    InterruptedInformation& operator=(const InterruptedInformation&) = delete;

    zef::Expected<std::string> copyContentType(const Object& object) override
    {
        auto type = system().copyContentType(object);
        if (const auto interruption = std::exchange(_interruption, nullptr))
            interruption();
        return type;
    }
    zef::Expected<bool> copyInvisibility(const Object& object) override
    {
        return system().copyInvisibility(object);
    }
    zef::Expected<bool> copyInvisibilityAtURL(const zef::FileURL& url) override
    {
        return system().copyInvisibilityAtURL(url);
    }
    std::string copyDisplayName(const Object& object) override
    {
        return system().copyDisplayName(object);
    }
    std::string copyDisplayNameAtPath(const std::string& path) override
    {
        return system().copyDisplayNameAtPath(path);
    }
    zef::Expected<Target> resolveAliasFile(const zef::FSRef& ref, const zef::FileURL& url) override
    {
        return system().resolveAliasFile(ref, url);
    }
    zef::Expected<Target> copyTargetOfURL(const zef::FileURL& url) override
    {
        return system().copyTargetOfURL(url);
    }

private:
    std::function<void()> _interruption;
};

class ZEFBasicInfoFileItemConcurrencyTest : public testing::Test {
protected:
    static zef::Ref<ZEFBasicInfoFileItem> info(const zef::FileURL& url)
    {
        const auto item = ZEFBasicInfoFileItem::classObject.newFileItemForURL(url);
        return zef::Ref(zef::downcast<ZEFBasicInfoFileItem>(item.get()));
    }

    static void happened(ZEFBasicInfoFileItem& item, ZEFFileEvent event)
    {
        item.eventOccurred(
            zef::makeRef<ZEFChangeRecord>(event, zef::Ref<ZEFFileItem>(&item)).get());
    }

    TemporaryFolder folder;
};

TEST_F(ZEFBasicInfoFileItemConcurrencyTest, KeepsNoAnswerThatAnEventHasOvertaken)
{
    const auto item = info(folder.write("file.txt"));
    InterruptedInformation information([&] {
        folder.rename("file.txt", "file.png");
        item->currentURL();
        happened(*item, ZEFFileEvent::renamed);
    });

    EXPECT_EQ(item->uti(), "public.plain-text");
    EXPECT_EQ(item->uti(), "public.png");
}

TEST_F(ZEFBasicInfoFileItemConcurrencyTest, AnswersThreadsThatAskAtOnceWhileEventsHappen)
{
    folder.write("file.txt");
    const auto link = info(folder.symlink("file.txt", "link"));
    std::atomic<int> wrong = 0;
    const auto ask = [&] {
        for (int round = 0; round < rounds; ++round) {
            wrong += link->isDirectory() || link->isInvisible() || link->isRealFile();
            wrong += link->fileName() != "link" || link->displayName() != "link";
            wrong += link->resolvedUTI() != "public.plain-text";
            wrong += !link->resolvedFile() || link->resolvedPath() != folder.path("file.txt");
        }
    };
    std::vector<std::thread> threads;
    for (int count = 0; count < 3; ++count)
        threads.emplace_back(ask);
    for (int round = 0; round < rounds; ++round) {
        happened(*link, ZEFFileEvent::renamed);
        link->resetAliasStatus();
        link->description();
    }
    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ(wrong, 0);
}

} // namespace
