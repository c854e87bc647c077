// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using JSON = ServeClient::JSON;

class ServeObserverTest : public testing::Test {
protected:
    ServeObserverTest()
    {
        folder.write("a");
        folder.makeFolder("sub");
        id = client.call("fileItem", { { "path", folder.path("a") } })["id"];
    }

    JSON call(const std::string& method, const std::string& observer)
    {
        return client.call(method, { { "id", id }, { "observer", observer } });
    }

    static JSON changes(bool exists, bool pathChanged, bool modified)
    {
        return { { "exists", exists }, { "pathChanged", pathChanged }, { "modified", modified } };
    }

    static JSON delivered(const JSON& event)
    {
        return { { "delivered", !event.is_null() }, { "event", event } };
    }

    TemporaryFolder folder;
    ServeClient client;
    JSON id;
};

TEST_F(ServeObserverTest, RegistersEqualTextsAsOneObserver)
{
    EXPECT_EQ(call("registerFileObserver", "one"), true);
    EXPECT_EQ(call("registerFileObserver", "one"), false);
    EXPECT_EQ(call("registerFileObserver", "two"), true);
    EXPECT_EQ(call("registerFileObserver", ""), true);
}

TEST_F(ServeObserverTest, RemovesAnObserverOnce)
{
    call("registerFileObserver", "one");

    EXPECT_EQ(call("removeFileObserver", "one"), true);
    EXPECT_EQ(call("removeFileObserver", "one"), false);
    EXPECT_EQ(call("registerFileObserver", "one"), true);
}

TEST_F(ServeObserverTest, AnswersEachObserverForItself)
{
    call("registerFileObserver", "one");
    call("registerFileObserver", "two");
    folder.setModificationTime("a", 5);

    EXPECT_EQ(call("changesForObserver", "one"), changes(true, false, true));
    EXPECT_EQ(call("changesForObserver", "one"), changes(true, false, false));
    EXPECT_EQ(call("changesForObserver", "two"), changes(true, false, true));
}

TEST_F(ServeObserverTest, RegistersAnObserverWithItsFirstQuestion)
{
    call("changesForObserver", "one");

    EXPECT_EQ(call("registerFileObserver", "one"), false);
    EXPECT_EQ(call("updateForObserver", "one"), delivered(nullptr));
}

TEST_F(ServeObserverTest, TellsOfAMoveAndOfALoss)
{
    call("registerFileObserver", "one");
    folder.rename("a", "b");
    EXPECT_EQ(call("changesForObserver", "one"), changes(true, true, false));

    folder.remove("b");
    EXPECT_EQ(call("changesForObserver", "one"), changes(false, true, false));
    EXPECT_EQ(call("changesForObserver", "one"), changes(false, false, false));
}

TEST_F(ServeObserverTest, DeliversTheEventOfAChange)
{
    call("registerFileObserver", "one");
    EXPECT_EQ(call("updateForObserver", "one"), delivered(nullptr));

    folder.setModificationTime("a", 5);
    EXPECT_EQ(call("updateForObserver", "one"), delivered(8));
    folder.rename("a", "b");
    EXPECT_EQ(call("updateForObserver", "one"), delivered(2));
    call("updateForObserver", "one"); // the rename changed a time stamp too
    folder.rename("b", "sub/b");
    EXPECT_EQ(call("updateForObserver", "one"), delivered(1));
    folder.remove("sub/b");
    EXPECT_EQ(call("updateForObserver", "one"), delivered(4));
    EXPECT_EQ(call("updateForObserver", "one"), delivered(nullptr));
}

TEST_F(ServeObserverTest, RefusesToUpdateAnObserverThatIsNotRegistered)
{
    const JSON parameters{ { "id", id }, { "observer", "one" } };

    EXPECT_EQ(client.errorCode("updateForObserver", parameters), -32602);
    call("registerFileObserver", "one");
    call("removeFileObserver", "one");
    EXPECT_EQ(client.errorCode("updateForObserver", parameters), -32602);
}

TEST_F(ServeObserverTest, NeedsAnItemAndAText)
{
    for (const auto* method : { "registerFileObserver", "removeFileObserver", "changesForObserver",
             "updateForObserver" }) {
        EXPECT_EQ(client.errorCode(method, { { "id", id } }), -32602);
        EXPECT_EQ(client.errorCode(method, { { "observer", "one" } }), -32602);
        EXPECT_EQ(client.errorCode(method, { { "id", id }, { "observer", 1 } }), -32602);
        EXPECT_EQ(client.errorCode(method, { { "id", 999 }, { "observer", "one" } }), -32602);
    }
}

TEST_F(ServeObserverTest, StartsAndEndsAKernelQueue)
{
    const JSON parameters{ { "id", id } };

    EXPECT_EQ(client.call("initKQueue", parameters), true);
    EXPECT_EQ(client.call("item", parameters)["usingKQueue"], true);
    EXPECT_EQ(client.call("endKQueue", parameters), true);
    EXPECT_EQ(client.call("item", parameters)["usingKQueue"], false);
    EXPECT_EQ(client.errorCode("initKQueue"), -32602);
    EXPECT_EQ(client.errorCode("endKQueue", { { "id", 999 } }), -32602);
}

} // namespace
