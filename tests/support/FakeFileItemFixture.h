// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "tests/support/FakeChangeNotifier.h"
#include "tests/support/FakeFileSystem.h"
#include "tests/support/FakeLocator.h"
#include "tests/support/FileChanges.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Observer.h"
#include "tests/support/SteppedClock.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

/// Items of fake files: the test decides everything about them and counts every question.
class FakeFileItemFixture : public testing::Test {
protected:
    FakeFileItemFixture()
    {
        zef::Clock::replaceShared(&clock);
        zef::ChangeNotifier::replaceShared(&notifier);
    }

    ~FakeFileItemFixture() override
    {
        EXPECT_EQ(notifier.openTokenCount(), 0u);
        zef::ChangeNotifier::replaceShared(nullptr);
        zef::Clock::replaceShared(nullptr);
    }

    static zef::FileURL url(std::string_view path)
    {
        return zef::FileURL::fromPath(path, zef::URLKind::file);
    }
    static zef::FileURL folderURL(std::string_view path)
    {
        return zef::FileURL::fromPath(path, zef::URLKind::folder);
    }

    /// The canonical item of what is at `path`.
    static zef::Ref<ZEFFileItem> item(std::string_view path)
    {
        return ZEFFileItem::classObject.newFileItemForURL(url(path));
    }

    /// An instance of its own, which the registry doesn't know.
    template <typename Item = ZEFFileItem>
    static zef::Ref<Item> unregistered(const zef::FileURL& where, const zef::FSRef* ref = nullptr,
        const zef::FileURL& pathRep = nullptr, const zef::Stat* statInfo = nullptr)
    {
        return zef::makeRef<Item>(where, ref, pathRep, statInfo);
    }

    zef::Stat stat(std::string_view path)
    {
        zef::Stat result;
        EXPECT_EQ(files.statLink(std::string(path).c_str(), result), 0) << path;
        return result;
    }

    zef::FSRef ref(std::string_view path) { return zef::FSRef(stat(path)); }

    /// The object gets another path, and its reference leads there.
    void move(std::string_view from, std::string_view to)
    {
        locator.setPlace(ref(from), url(to));
        files.rename(from, to);
    }

    /// The object gets another path, and nothing finds it again.
    void hide(std::string_view from, std::string_view to)
    {
        locator.setPlace(ref(from), nullptr);
        files.rename(from, to);
    }

    FakeFileSystem files;
    FakeLocator locator;
    FakeChangeNotifier notifier;
    SteppedClock clock;
    LogRecorder log;
    zef::Ref<Observer> observer = zef::makeRef<Observer>();
    zef::Ref<Observer> other = zef::makeRef<Observer>();
};
