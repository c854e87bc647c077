// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tests/support/ZefProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <string>
#include <vector>

/// A folder whose files are archived by one run of the program and found again by another.
class ArchiveFixture : public testing::Test {
protected:
    using JSON = nlohmann::json;
    using Names = std::vector<std::string>;

    static Names lines(const std::string& text)
    {
        Names result;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);)
            result.push_back(line);
        return result;
    }

    static std::vector<JSON> objects(const std::string& text)
    {
        std::vector<JSON> result;
        for (const auto& line : lines(text))
            result.push_back(JSON::parse(line));
        return result;
    }

    ZefProcess::Result archive(const Names& names)
    {
        Names arguments{ "archive" };
        for (const auto& name : names)
            arguments.push_back(folder.path(name));
        return ZefProcess::run(arguments, {}, settings);
    }

    ZefProcess::Result resolve(const std::string& input, const Names& options = {})
    {
        Names arguments{ "resolve" };
        arguments.insert(arguments.end(), options.begin(), options.end());
        return ZefProcess::run(arguments, input, settings);
    }

    TemporaryFolder folder;
    ZefProcess::Settings settings;
};
