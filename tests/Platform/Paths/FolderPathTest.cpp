// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Paths/FolderPath.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

using zef::FolderPath;

TEST(FolderPathTest, IsOneObjectForEqualBytes)
{
    const auto one = FolderPath::of("/a/");

    EXPECT_EQ(FolderPath::of(std::string("/a") + "/"), one);
    EXPECT_FALSE(FolderPath::of("/b/") == one);
    EXPECT_EQ(one->bytes(), "/a/");
}

TEST(FolderPathTest, KeepsBytesOfItsOwn)
{
    std::string bytes = "/a/";
    const auto path = FolderPath::of(bytes);
    bytes = "/b/";

    EXPECT_EQ(path->bytes(), "/a/");
    EXPECT_EQ(FolderPath::of("/a/"), path);
}

TEST(FolderPathTest, IsMadeAnewAfterItsLastUse)
{
    FolderPath::of("/gone/");

    EXPECT_EQ(FolderPath::of("/gone/")->bytes(), "/gone/");
}

TEST(FolderPathTest, StaysOneObjectWhileThreadsTakeAndDropIt)
{
    constexpr int rounds = 20000;
    std::atomic<int> differences{ 0 };
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index) {
        threads.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) {
                const auto one = FolderPath::of("/contended/");
                const auto other = FolderPath::of("/contended/");
                differences += !(one == other) || one->bytes() != "/contended/";
            }
        });
    }
    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ(differences, 0);
}

} // namespace
