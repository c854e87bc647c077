// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "tests/support/FileChanges.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Observer.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

/// How the tests' folder is spelled in the paths that items get.
enum class Spelling { direct, throughLink };

/// Items of real files, below a folder's own path or below a symbolic link to it.
class FileItemFixture : public testing::TestWithParam<Spelling> {
protected:
    FileItemFixture();

    /// The path of what has this name, as the test spells it.
    std::string path(std::string_view name) const;
    zef::FileURL url(std::string_view name) const;
    zef::FileURL folderURL(std::string_view name) const;
    zef::Ref<ZEFFileItem> item(std::string_view name) const;
    zef::Stat stat(std::string_view name) const;

    /// Writes until the file's time stamps show it: within one tick of the system's clock they may
    /// stay the same.
    void change(std::string_view name);

    /// Makes a file with the number of the deleted one that `deleted` describes; false where the
    /// file system doesn't give it again.
    bool writeWithNumberOf(const zef::Stat& deleted, std::string_view name);

    /// Whether an object is found wherever on its volume it was moved.
    bool findsEverything() const;

    TemporaryFolder folder;
    LogRecorder log;
    zef::Ref<Observer> observer = zef::makeRef<Observer>();
    zef::Ref<Observer> other = zef::makeRef<Observer>();

private:
    /// Below this folder the tests' files lie.
    std::string _prefix;
};

std::string nameOfSpelling(const testing::TestParamInfo<Spelling>&);
