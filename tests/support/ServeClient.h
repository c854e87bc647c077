// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ZefProcess.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

/// A client of `zef serve`. Notifications that arrive while it waits for an answer are kept.
class ServeClient {
public:
    using JSON = nlohmann::json;

    /// Starts the server with these options.
    explicit ServeClient(const std::vector<std::string>& options = {});

    ZefProcess& process() { return _process; }

    /// Sends one line as it stands.
    void sendLine(std::string_view line);
    /// The line of a request; its id is a new number.
    std::string request(const std::string& method, const JSON& parameters = JSON::object());
    /// Sends a request and returns the number in its id.
    int send(const std::string& method, const JSON& parameters = JSON::object());

    /// The next message, whatever it is. Throws when there is none any more.
    JSON nextMessage();
    /// The next answer; notifications before it are kept.
    JSON nextAnswer();

    /// The whole answer to a request.
    JSON answer(const std::string& method, const JSON& parameters = JSON::object());
    /// The result; throws when the answer is an error.
    JSON call(const std::string& method, const JSON& parameters = JSON::object());
    /// The code of the error; 0 when the answer is none.
    int errorCode(const std::string& method, const JSON& parameters = JSON::object());
    /// The same for a line that is sent as it stands.
    int errorCodeOfLine(std::string_view line);

    /// The parameters of each notification of this method that was kept, which are forgotten then.
    std::vector<JSON> takeNotifications(const std::string& method);
    /// The parameters of the next notification of this method, kept or still to come.
    JSON nextNotification(const std::string& method);

private:
    static std::vector<std::string> commandLine(const std::vector<std::string>& options);

    ZefProcess _process;
    std::vector<JSON> _kept;
    int _lastId = 0;
};
