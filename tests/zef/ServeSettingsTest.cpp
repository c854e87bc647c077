// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using JSON = ServeClient::JSON;

class ServeSettingsTest : public testing::Test {
protected:
    TemporaryFolder folder;
    ServeClient client;
};

TEST_F(ServeSettingsTest, TellsTheDefaults)
{
    EXPECT_EQ(client.call("settings"),
        JSON({
            { "accepted", JSON::object() },
            { "fileClass", "ZEFBasicInfoFileItem" },
            { "asynchronous", false },
            { "pollingInterval", 3.0 },
            { "isPaused", false },
        }));
}

TEST_F(ServeSettingsTest, TakesEverySettingBeforeTheFirstSubscription)
{
    const auto result = client.call("settings",
        { { "fileClass", "ZEFFileItem" }, { "asynchronous", true }, { "pollingInterval", 0.25 },
            { "paused", true } });

    EXPECT_EQ(result["accepted"],
        JSON({ { "fileClass", true }, { "asynchronous", true }, { "pollingInterval", true },
            { "paused", true } }));
    EXPECT_EQ(result["asynchronous"], true);
    EXPECT_EQ(result["pollingInterval"], 0.25);
    EXPECT_EQ(result["isPaused"], true);
}

TEST_F(ServeSettingsTest, AcceptsNeitherClassNorLoadingAfterASubscription)
{
    client.call("subscribe", { { "subscriber", "s" }, { "path", folder.path() } });

    const auto result = client.call("settings",
        { { "fileClass", "ZEFFileItem" }, { "asynchronous", true }, { "paused", true } });

    EXPECT_EQ(result["accepted"],
        JSON({ { "fileClass", false }, { "asynchronous", false }, { "paused", true } }));
    EXPECT_EQ(result["asynchronous"], false);
    EXPECT_EQ(result["isPaused"], true);
}

TEST_F(ServeSettingsTest, KeepsTheIntervalInThirtyTwoBits)
{
    const auto result = client.call("settings", { { "pollingInterval", 0.1 } });

    EXPECT_EQ(result["pollingInterval"], static_cast<double>(0.1F));
}

TEST_F(ServeSettingsTest, RefusesAnIntervalThatIsNoPositiveNumberOfSeconds)
{
    for (const auto& interval : { JSON(0), JSON(-1), JSON(1e300), JSON(1e-300), JSON("1") })
        EXPECT_EQ(client.errorCode("settings", { { "pollingInterval", interval } }), -32602)
            << interval;
    EXPECT_EQ(client.call("settings")["pollingInterval"], 3.0);
}

TEST_F(ServeSettingsTest, MakesItemsOfTheChosenClass)
{
    folder.write("a");
    folder.write("b");
    const auto item = [this](const char* name) {
        return client.call("fileItem", { { "path", folder.path(name) } });
    };

    EXPECT_EQ(
        client.call("settings", { { "fileClass", "ZEFFileItem" } })["fileClass"], "ZEFFileItem");
    const auto plain = item("a");
    client.call("settings", { { "fileClass", "ZEFBasicInfoFileItem" } });

    EXPECT_EQ(plain["class"], "ZEFFileItem");
    EXPECT_EQ(item("b")["class"], "ZEFBasicInfoFileItem");
    EXPECT_EQ(item("a"), plain);
}

TEST_F(ServeSettingsTest, BeginsWithPlainItemsWhenItIsStartedSo)
{
    ServeClient plain({ "--plain" });
    folder.write("a");

    EXPECT_EQ(plain.call("settings")["fileClass"], "ZEFFileItem");
    EXPECT_EQ(plain.call("fileItem", { { "path", folder.path("a") } })["class"], "ZEFFileItem");
}

TEST_F(ServeSettingsTest, RefusesClassesThatAreNotThere)
{
    EXPECT_EQ(client.errorCode("settings", { { "fileClass", "Nonsense" } }), -32602);
    EXPECT_EQ(client.errorCode("settings", { { "fileClass", 1 } }), -32602);
}

TEST_F(ServeSettingsTest, ChangesNothingWhenOneSettingIsWrong)
{
    EXPECT_EQ(
        client.errorCode("settings", { { "asynchronous", true }, { "paused", "yes" } }), -32602);

    EXPECT_EQ(client.call("settings")["asynchronous"], false);
}

TEST_F(ServeSettingsTest, RefusesASettingThatIsNotThere)
{
    EXPECT_EQ(client.errorCode("settings", { { "interval", 1 } }), -32602);
}

TEST_F(ServeSettingsTest, TakesNullForLeftOut)
{
    EXPECT_EQ(client.call("settings", { { "paused", nullptr } })["accepted"], JSON::object());
}

} // namespace
