// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Types/TypeTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
#include <thread>
#include <vector>

namespace {

TEST(TypeTableConcurrencyTest, AllThreadsShareOneTableFromTheFirstCallOn)
{
    constexpr auto threadCount = 8;
    std::barrier start(threadCount);
    std::vector<const zef::TypeTable*> tables(threadCount);
    std::vector<int> answers(threadCount);
    std::vector<std::thread> threads;
    for (std::size_t index = 0; index < threadCount; ++index) {
        threads.emplace_back([&, index] {
            start.arrive_and_wait();
            tables[index] = &zef::TypeTable::shared();
            for (auto round = 0; round < 200; ++round) {
                const auto type = tables[index]->typeOfFileNamed("a.jpg");
                answers[index] += tables[index]->conforms(type, "public.image");
                answers[index] += tables[index]->conforms("mime:text/x-nobody", "public.folder");
            }
        });
    }
    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ(std::count(tables.begin(), tables.end(), &zef::TypeTable::shared()), threadCount);
    EXPECT_EQ(answers, std::vector<int>(threadCount, 200));
}

} // namespace
