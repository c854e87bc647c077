// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// A running `zef serve` that watches a folder.
class ServeSubscriptionFixture : public testing::Test {
protected:
    using JSON = ServeClient::JSON;
    using Texts = std::vector<std::string>;

    static constexpr auto foundChanges = "directorySubscription.foundChanges";

    JSON subscribe(const std::string& subscriber, const std::string& name = {})
    {
        return client.call(
            "subscribe", { { "subscriber", subscriber }, { "path", folder.path(name) } });
    }

    /// Polls, and returns what the subscribers were told.
    std::vector<JSON> check()
    {
        client.call("checkFilesystem");
        return client.takeNotifications(foundChanges);
    }

    JSON subscription(const JSON& number)
    {
        return client.call("subscription", { { "subscription", number } });
    }

    /// "event name" of each record.
    static std::vector<std::string> events(const JSON& notification)
    {
        std::vector<std::string> result;
        for (const auto& record : notification["changes"])
            result.push_back(record["name"]);
        return result;
    }

    TemporaryFolder folder;
    ServeClient client;
};
