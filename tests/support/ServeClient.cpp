// SPDX-License-Identifier: MIT
#include "tests/support/ServeClient.h"

#include <algorithm>
#include <stdexcept>

ServeClient::ServeClient(const std::vector<std::string>& options)
    : _process(commandLine(options))
{
}

std::vector<std::string> ServeClient::commandLine(const std::vector<std::string>& options)
{
    std::vector<std::string> result{ "serve" };
    result.insert(result.end(), options.begin(), options.end());
    return result;
}

void ServeClient::sendLine(std::string_view line)
{
    _process.send(std::string(line) + '\n');
}

std::string ServeClient::request(const std::string& method, const JSON& parameters)
{
    return JSON({
                    { "jsonrpc", "2.0" },
                    { "id", ++_lastId },
                    { "method", method },
                    { "params", parameters },
                })
        .dump();
}

int ServeClient::send(const std::string& method, const JSON& parameters)
{
    sendLine(request(method, parameters));
    return _lastId;
}

ServeClient::JSON ServeClient::nextMessage()
{
    const auto line = _process.nextLine();
    if (!line)
        throw std::runtime_error("the server has ended: " + _process.errorText());
    return JSON::parse(*line);
}

ServeClient::JSON ServeClient::nextAnswer()
{
    for (;;) {
        auto message = nextMessage();
        if (message.contains("id"))
            return message;
        _kept.push_back(std::move(message));
    }
}

ServeClient::JSON ServeClient::answer(const std::string& method, const JSON& parameters)
{
    const int id = send(method, parameters);
    auto message = nextAnswer();
    if (message.at("id") != id)
        throw std::runtime_error("an answer to something else: " + message.dump());
    return message;
}

ServeClient::JSON ServeClient::call(const std::string& method, const JSON& parameters)
{
    auto message = answer(method, parameters);
    if (!message.contains("result"))
        throw std::runtime_error(method + ": " + message.dump());
    return message["result"];
}

int ServeClient::errorCode(const std::string& method, const JSON& parameters)
{
    const auto message = answer(method, parameters);
    return message.contains("error") ? message["error"]["code"].get<int>() : 0;
}

int ServeClient::errorCodeOfLine(std::string_view line)
{
    sendLine(line);
    const auto message = nextAnswer();
    return message.contains("error") ? message["error"]["code"].get<int>() : 0;
}

std::vector<ServeClient::JSON> ServeClient::takeNotifications(const std::string& method)
{
    std::vector<JSON> result;
    std::erase_if(_kept, [&](const JSON& message) {
        if (message["method"] != method)
            return false;
        result.push_back(message["params"]);
        return true;
    });
    return result;
}

ServeClient::JSON ServeClient::nextNotification(const std::string& method)
{
    const auto isWanted = [&](const JSON& message) {
        return message.value("method", "") == method;
    };
    const auto found = std::find_if(_kept.begin(), _kept.end(), isWanted);
    if (found != _kept.end()) {
        auto result = (*found)["params"];
        _kept.erase(found);
        return result;
    }
    for (;;) {
        auto message = nextMessage();
        if (isWanted(message))
            return message["params"];
        _kept.push_back(std::move(message));
    }
}
