// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using JSON = ServeClient::JSON;

/// Lines that no client should send, the same ones in every run.
class Lines {
public:
    std::string random(std::size_t longest)
    {
        std::string line(number(longest + 1), '\0');
        for (auto& byte : line)
            byte = static_cast<char>(number(256));
        return withoutLineEnds(line);
    }

    /// A request with a few bytes of it changed, dropped or doubled.
    std::string mutated(std::string line)
    {
        for (auto count = 1 + number(4); count && !line.empty(); --count) {
            const auto position = number(line.size());
            switch (number(4)) {
            case 0:
                line[position] = static_cast<char>(number(256));
                break;
            case 1:
                line.erase(position, 1 + number(8));
                break;
            case 2:
                line.insert(position, line.substr(position, 1 + number(8)));
                break;
            case 3:
                line.insert(position, 1, "{}[]\",:\\u0e-9"[number(13)]);
                break;
            }
        }
        return withoutLineEnds(line);
    }

    std::size_t number(std::size_t limit) { return _engine() % limit; }

private:
    static std::string withoutLineEnds(std::string line)
    {
        std::erase(line, '\n');
        return line;
    }

    std::minstd_rand _engine{ 20010101 };
};

class ServeFuzzTest : public testing::Test {
protected:
    // Harmless whatever becomes of them; no shutdown among them.
    std::vector<std::string> requests()
    {
        const auto path = folder.path();
        const auto id = client.call("fileItem", { { "path", path } })["id"];
        const auto archive = client.call("archiveDictionary", { { "id", id } });
        return {
            client.request("fileItem", { { "path", path } }),
            client.request("item", { { "id", 1 } }),
            client.request("currentURL", { { "id", 1 } }),
            client.request("basicInfo", { { "id", 1 } }),
            client.request("resetAliasStatus", { { "id", 1 } }),
            client.request("conformsTo", { { "uti", "public.png" }, { "to", "public.data" } }),
            client.request("archiveDictionary", { { "id", 1 } }),
            client.request("fileItemForArchiveDictionary", { { "archive", archive } }),
            client.request("changesForObserver", { { "id", 1 }, { "observer", "o" } }),
            client.request("updateForObserver", { { "id", 1 }, { "observer", "o" } }),
            client.request("settings", { { "pollingInterval", 1.5 }, { "paused", false } }),
            client.request("subscribe", { { "subscriber", "s" }, { "path", path } }),
            client.request("subscribe", { { "subscriber", "s" }, { "id", 1 } }),
            client.request("subscription", { { "subscription", 1 } }),
            client.request("unsubscribe", { { "subscriber", "s" }, { "path", path } }),
            client.request("releaseItem", { { "id", 1 } }),
            client.request("checkFilesystem"),
        };
    }

    /// Whether the server still answers, and only with whole messages until then.
    bool isAlive()
    {
        client.sendLine(R"({"jsonrpc":"2.0","id":"alive","method":"subscriptions"})");
        while (client.nextAnswer()["id"] != "alive") { }
        return true;
    }

    TemporaryFolder folder;
    ServeClient client;
    Lines lines;
};

TEST_F(ServeFuzzTest, SurvivesRandomBytes)
{
    for (int count = 0; count < 2000; ++count)
        client.sendLine(lines.random(200));

    EXPECT_TRUE(isAlive());
    client.process().closeInput();
    EXPECT_EQ(client.process().status(), 0);
}

TEST_F(ServeFuzzTest, SurvivesRequestsThatWereDamagedOnTheirWay)
{
    const auto whole = requests();

    for (int count = 0; count < 3000; ++count)
        client.sendLine(lines.mutated(whole[lines.number(whole.size())]));

    EXPECT_TRUE(isAlive());
    client.process().closeInput();
    EXPECT_EQ(client.process().status(), 0);
}

} // namespace
