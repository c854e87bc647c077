// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using JSON = ServeClient::JSON;

class ServeProtocolTest : public testing::Test {
protected:
    /// The whole answer to a line.
    JSON answerTo(std::string_view line)
    {
        client.sendLine(line);
        return client.nextAnswer();
    }

    static std::string requestWithId(const std::string& id)
    {
        return R"({"jsonrpc":"2.0","id":)" + id + R"(,"method":"subscriptions"})";
    }

    ServeClient client;
};

TEST_F(ServeProtocolTest, AnswersInTheFormOfJsonRpc)
{
    EXPECT_EQ(answerTo(requestWithId("1")),
        JSON({ { "jsonrpc", "2.0" }, { "id", 1 }, { "result", JSON::array() } }));
}

TEST_F(ServeProtocolTest, SaysWhatIsWrongInEveryError)
{
    const auto answer = answerTo(R"({"jsonrpc":"2.0","id":"x","method":"nonsense"})");

    EXPECT_EQ(answer["jsonrpc"], "2.0");
    EXPECT_EQ(answer["id"], "x");
    EXPECT_EQ(answer["error"]["code"], -32601);
    EXPECT_NE(answer["error"]["message"].get<std::string>().find("nonsense"), std::string::npos);
    EXPECT_FALSE(answer.contains("result"));
}

TEST_F(ServeProtocolTest, EchoesEveryIdAsItIsWritten)
{
    for (const std::string id : { "0", "-5", "18446744073709551615", "1.50", "1e2",
             "123456789012345678901234567890", R"("")", R"("a \"b\" é")", "null" }) {
        client.sendLine(requestWithId(id));
        const auto line = client.process().nextLine();
        ASSERT_TRUE(line);
        EXPECT_NE(line->find(R"("id":)" + id + ','), std::string::npos) << *line;
    }
}

TEST_F(ServeProtocolTest, RefusesAnIdThatIsNoTextNumberOrNull)
{
    for (const auto* id : { "true", "[]", "{}", "[1]", "\"\xff\"", R"("\ud800")" }) {
        const auto answer = answerTo(requestWithId(id));
        EXPECT_EQ(answer["error"]["code"], -32600) << id;
        EXPECT_TRUE(answer["id"].is_null()) << id;
    }
}

TEST_F(ServeProtocolTest, AnswersLinesThatAreNoJsonWithAParseErrorAndCarriesOn)
{
    const std::string nul(1, '\0');
    const std::vector<std::string> lines{ "", " ", "nonsense", "{", "[", "{\"jsonrpc\":", "\"",
        "'a'", "{a:1}", "{\"a\":1,}", "\xff\xfe", "1 2", "nan", nul, "{\"a\":\"" + nul + "\"}",
        "\"\\x\"", "\"\t\"" };
    for (const auto& line : lines) {
        const auto answer = answerTo(line);
        EXPECT_EQ(answer["error"]["code"], -32700) << line;
        EXPECT_TRUE(answer["id"].is_null()) << line;
    }
    EXPECT_EQ(client.call("subscriptions"), JSON::array());
}

TEST_F(ServeProtocolTest, SurvivesAMegabyteOfBrackets)
{
    const std::string brackets(1'000'000, '[');
    const std::string closed = brackets + std::string(1'000'000, ']');
    std::string objects;
    for (int level = 0; level < 200'000; ++level)
        objects += R"({"a":)";

    EXPECT_EQ(client.errorCodeOfLine(brackets), -32700);
    EXPECT_EQ(client.errorCodeOfLine(closed), -32700);
    EXPECT_EQ(client.errorCodeOfLine(objects), -32700);
    EXPECT_EQ(client.errorCodeOfLine(
                  R"({"jsonrpc":"2.0","id":1,"method":"subscriptions","params":)" + closed + "}"),
        -32700);
    EXPECT_EQ(client.call("subscriptions"), JSON::array());
}

TEST_F(ServeProtocolTest, CountsNoBracketsInTexts)
{
    const std::string brackets(1000, '[');

    EXPECT_EQ(answerTo(requestWithId("\"\\\"" + brackets + "\""))["id"], "\"" + brackets);
}

TEST_F(ServeProtocolTest, AnswersJsonThatIsNoRequestWithAnInvalidRequest)
{
    for (const auto* line : { "1", "null", "\"a\"", "true", "{}", "[]", R"({"jsonrpc":"2.0"})",
             R"({"jsonrpc":"2.0","method":1})", R"({"jsonrpc":"1.0","method":"subscriptions"})",
             R"({"method":"subscriptions"})", R"({"jsonrpc":2.0,"method":"subscriptions"})",
             R"([{"jsonrpc":"2.0","id":1,"method":"subscriptions"}])" }) {
        const auto answer = answerTo(line);
        EXPECT_EQ(answer["error"]["code"], -32600) << line;
        EXPECT_TRUE(answer["id"].is_null()) << line;
    }
}

TEST_F(ServeProtocolTest, KeepsTheIdOfAnInvalidRequestThatHasOne)
{
    EXPECT_EQ(answerTo(R"({"id":5,"method":"subscriptions"})")["id"], 5);
}

TEST_F(ServeProtocolTest, DoesNotKnowMethodsThatAreNotThere)
{
    for (const auto* method :
        { "", "Subscriptions", "subscriptions ", "filesindirectory", "Load", "rpc.discover" })
        EXPECT_EQ(client.errorCode(method), -32601) << method;
}

TEST_F(ServeProtocolTest, TakesParametersByNameOnly)
{
    EXPECT_EQ(client.errorCode("subscriptions", JSON::array()), -32602);
    EXPECT_EQ(client.errorCode("subscriptions", JSON("text")), -32602);
    EXPECT_EQ(client.errorCode("subscriptions", { { "unheard", 1 } }), -32602);
    EXPECT_EQ(client.errorCode("subscriptions", JSON()), 0);
}

TEST_F(ServeProtocolTest, DoesWhatANotificationAsksForWithoutAnAnswer)
{
    TemporaryFolder folder;
    const JSON parameters{ { "subscriber", "s" }, { "path", folder.path() } };

    client.sendLine(
        JSON({ { "jsonrpc", "2.0" }, { "method", "subscribe" }, { "params", parameters } }).dump());
    client.sendLine(R"({"jsonrpc":"2.0","method":"nonsense"})");
    client.sendLine(R"({"jsonrpc":"2.0","method":"subscribe","params":{"path":1}})");

    EXPECT_EQ(client.call("subscriptions"), JSON({ 1 }));
}

TEST_F(ServeProtocolTest, AnswersRequestsInTheirOrder)
{
    std::string lines;
    for (int id = 0; id < 1000; ++id)
        lines += requestWithId(std::to_string(id)) + '\n';
    client.process().send(lines);

    for (int id = 0; id < 1000; ++id)
        ASSERT_EQ(client.nextAnswer()["id"], id);
}

TEST_F(ServeProtocolTest, TakesLinesInPiecesOfAnySize)
{
    TemporaryFolder folder;
    const auto line = client.request("fileItem", { { "path", folder.path() } }) + "\r\n";

    for (const char byte : line)
        client.process().send(std::string_view(&byte, 1));

    EXPECT_EQ(client.nextAnswer()["result"]["path"], folder.path());
}

TEST_F(ServeProtocolTest, PollsWhileOnlyAPartOfARequestIsThere)
{
    TemporaryFolder folder;
    client.call("settings", { { "pollingInterval", 0.01 } });
    client.call("subscribe", { { "subscriber", "s" }, { "path", folder.path() } });
    const auto line = client.request("subscriptions");
    client.process().send(line.substr(0, 10));
    folder.write("a");

    client.nextNotification("directorySubscription.foundChanges");

    client.process().send(line.substr(10) + '\n');
    EXPECT_EQ(client.nextAnswer()["result"], JSON({ 1 }));
}

TEST_F(ServeProtocolTest, TakesALineOfManyMegabytes)
{
    const std::string blanks(20'000'000, ' ');

    EXPECT_EQ(answerTo(blanks + requestWithId("1"))["result"], JSON::array());
}

TEST_F(ServeProtocolTest, SkipsALineThatIsTooLong)
{
    const std::string tooLong(64 * 1024 * 1024 + 1, ' ');

    const auto answer = answerTo(tooLong + requestWithId("1"));

    EXPECT_EQ(answer["error"]["code"], -32700);
    EXPECT_TRUE(answer["id"].is_null());
    EXPECT_EQ(answerTo(requestWithId("2"))["id"], 2);
}

TEST_F(ServeProtocolTest, KeepsItsErrorsShort)
{
    const std::string name(1'000'000, 'a');

    for (const auto& answer :
        { client.answer(name), client.answer("item", { { name, 1 } }), answerTo('"' + name) })
        EXPECT_LT(answer["error"]["message"].get<std::string>().size(), 1000u);
}

TEST_F(ServeProtocolTest, WritesOnlyValidTextWhateverItIsAskedFor)
{
    TemporaryFolder folder;
    const std::string name = "\xff\xc3\n\x1b\x7f\xe2\x82";
    folder.write(name);
    client.call("subscribe", { { "subscriber", "s" }, { "path", folder.path() } });
    folder.remove(name);
    folder.write(name + "2");

    client.call("checkFilesystem");

    // Parsed, so valid; every line was one message.
    EXPECT_EQ(client.takeNotifications("directorySubscription.foundChanges").size(), 1u);
}

} // namespace
