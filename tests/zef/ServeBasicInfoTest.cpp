// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using JSON = ServeClient::JSON;

class ServeBasicInfoTest : public testing::Test {
protected:
    JSON itemAt(const std::string& name)
    {
        return client.call("fileItem", { { "url", folder.url(name).absoluteString() } });
    }

    JSON infoAt(const std::string& name)
    {
        return client.call("basicInfo", { { "id", itemAt(name)["id"] } });
    }

    bool conforms(const char* type, const char* other)
    {
        return client.call("conformsTo", { { "uti", type }, { "to", other } }).get<bool>();
    }

    TemporaryFolder folder;
    ServeClient client;
};

TEST_F(ServeBasicInfoTest, TellsEverythingOfAFile)
{
    const auto url = folder.write("a.txt").absoluteString();

    EXPECT_EQ(infoAt("a.txt"),
        JSON({
            { "fileName", "a.txt" },
            { "displayName", "a.txt" },
            { "uti", "public.plain-text" },
            { "resolvedUTI", "public.plain-text" },
            { "resolvedURL", url },
            { "resolvedPath", folder.path("a.txt") },
            { "resolvedFile", itemAt("a.txt") },
            { "isDirectory", false },
            { "isPackage", false },
            { "isApplication", false },
            { "isAlias", false },
            { "isRealFile", true },
            { "isInvisible", false },
            { "isRootDirectory", false },
            { "isVolumesDirectory", false },
        }));
}

TEST_F(ServeBasicInfoTest, AnswersInTheOrderInWhichItComputes)
{
    folder.write("a");
    client.sendLine(client.request("fileItem", { { "path", folder.path("a") } }));
    const auto id = client.nextAnswer()["result"]["id"];

    client.sendLine(client.request("basicInfo", { { "id", id } }));
    const auto line = client.process().nextLine().value_or("");

    std::size_t position = 0;
    for (const auto* name : { "fileName", "displayName", "uti", "resolvedUTI", "resolvedURL",
             "resolvedPath", "resolvedFile", "isDirectory", "isPackage", "isApplication", "isAlias",
             "isRealFile", "isInvisible", "isRootDirectory", "isVolumesDirectory" }) {
        const auto found = line.find('"' + std::string(name) + "\":", position);
        ASSERT_NE(found, std::string::npos) << name << " in " << line;
        position = found;
    }
}

TEST_F(ServeBasicInfoTest, TellsWhereALinkLeadsAndKeepsItsItem)
{
    folder.makeFolder("sub");
    folder.symlink("sub", "link");

    const auto info = infoAt("link");

    EXPECT_EQ(info["uti"], "public.symlink");
    EXPECT_EQ(info["resolvedUTI"], "public.folder");
    EXPECT_EQ(info["isDirectory"], true);
    EXPECT_EQ(info["isRealFile"], false);
    EXPECT_EQ(info["resolvedPath"], folder.path("sub"));
    const JSON target{ { "id", info["resolvedFile"]["id"] } };
    EXPECT_EQ(client.call("item", target)["path"], folder.path("sub"));
}

TEST_F(ServeBasicInfoTest, ShowsNamesThatAreNoTextWithReplacements)
{
    folder.write("a\xff");

    EXPECT_EQ(infoAt("a\xff")["fileName"], "a\ufffd");
}

TEST_F(ServeBasicInfoTest, FollowsAFileThatWasRenamedOnceAnObserverAsks)
{
    folder.write("a.txt");
    const auto id = itemAt("a.txt")["id"];
    const JSON observer{ { "id", id }, { "observer", "o" } };
    client.call("registerFileObserver", observer);
    EXPECT_EQ(client.call("basicInfo", { { "id", id } })["fileName"], "a.txt");

    folder.rename("a.txt", "b.png");

    EXPECT_EQ(client.call("basicInfo", { { "id", id } })["fileName"], "a.txt");
    EXPECT_EQ(client.call("updateForObserver", observer)["event"], 2);
    const auto info = client.call("basicInfo", { { "id", id } });
    EXPECT_EQ(info["fileName"], "b.png");
    EXPECT_EQ(info["uti"], "public.png");
}

TEST_F(ServeBasicInfoTest, FindsALinksTargetAnewAfterTheAliasStatusWasReset)
{
    folder.symlink("later", "link");
    const JSON id{ { "id", itemAt("link")["id"] } };
    EXPECT_EQ(client.call("basicInfo", id)["isDirectory"], false);
    folder.makeFolder("later");
    EXPECT_EQ(client.call("basicInfo", id)["isDirectory"], false);

    EXPECT_EQ(client.call("resetAliasStatus", id), true);

    const auto description = client.call("item", id)["description"].get<std::string>();
    EXPECT_NE(description.find("resolvedIsDirectory: -1, isDirectory: -1"), std::string::npos)
        << description;
}

TEST_F(ServeBasicInfoTest, RefusesToTellOfPlainItems)
{
    folder.write("a");
    client.call("settings", { { "fileClass", "ZEFFileItem" } });
    const JSON id{ { "id", itemAt("a")["id"] } };

    EXPECT_EQ(client.errorCode("basicInfo", id), -32602);
    EXPECT_EQ(client.errorCode("resetAliasStatus", id), -32602);
    EXPECT_EQ(client.call("item", id)["class"], "ZEFFileItem");
}

TEST_F(ServeBasicInfoTest, RefusesNumbersThatAreNoItem)
{
    EXPECT_EQ(client.errorCode("basicInfo", { { "id", 999 } }), -32602);
    EXPECT_EQ(client.errorCode("basicInfo"), -32602);
    EXPECT_EQ(client.errorCode("resetAliasStatus", { { "id", "x" } }), -32602);
}

TEST_F(ServeBasicInfoTest, KnowsWhichTypesConformToWhich)
{
    EXPECT_TRUE(conforms("public.png", "public.image"));
    EXPECT_TRUE(conforms("public.png", "public.item"));
    EXPECT_TRUE(conforms("PUBLIC.PNG", "public.png"));
    EXPECT_FALSE(conforms("public.image", "public.png"));
    EXPECT_FALSE(conforms("public.folder", "public.data"));
    EXPECT_FALSE(conforms("never heard of", "public.item"));
    EXPECT_EQ(client.errorCode("conformsTo", { { "uti", "public.png" } }), -32602);
    EXPECT_EQ(client.errorCode("conformsTo", { { "uti", 1 }, { "to", "public.png" } }), -32602);
}

TEST_F(ServeBasicInfoTest, GivesSubscriptionsItemsWithBasicInfo)
{
    folder.write("a.txt");
    const auto number = client.call(
        "subscribe", { { "subscriber", "s" }, { "path", folder.path() } })["subscription"];

    const auto files = client.call("subscription", { { "subscription", number } })["files"];

    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0]["class"], "ZEFBasicInfoFileItem");
    EXPECT_EQ(client.call("basicInfo", { { "id", files[0]["id"] } })["uti"], "public.plain-text");
}

} // namespace
