// SPDX-License-Identifier: MIT
#include "tools/zef/Serve/Server.h"

#include "tools/zef/ExitStatus.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"
#include "tools/zef/Serve/BasicInfoMethods.h"
#include "tools/zef/Serve/Message.h"

#include <unistd.h>

namespace tool {

Server::Server(const ZEFFileItemClass& fileClass)
{
    zef::setLogSink([](std::string_view line) {
        sendNotification("log", { { "message", std::string(line) } });
    });
    ZEFFileManager::defaultFileManager()->setFileClass(&fileClass);
    _items.addTo(_methods);
    BasicInfoMethods::addTo(_methods);
    _loads.addTo(_methods);
    _subscriptions.addTo(_methods);
    _manager.addTo(_methods);
}

// Subscriptions die first: they still know the subscribers.
Server::~Server()
{
    _loads.cancelAll();
    _subscriptions.forgetAll();
    ZEFFileManager::defaultFileManager()->shutdown();
}

int Server::run()
{
    while (!isDone()) {
        const auto wakeUp = waitForWork(STDIN_FILENO);
        if (wakeUp.hasInput) {
            _input.read();
            answerLines();
        } else if (wakeUp.runLoopIsDue) {
            zef::RunLoop::current().perform();
            _subscriptions.forgetDropped();
        }
    }
    return mustEnd() ? statusOfEnd() : ExitStatus::done;
}

bool Server::isDone() const
{
    return _input.hasEnded() || _manager.isShutDown() || mustEnd();
}

void Server::answerLines()
{
    while (!_manager.isShutDown() && !mustEnd()) {
        const auto line = _input.takeLine();
        if (!line)
            return;
        answer(*line);
    }
}

void Server::answer(const LineReader::Line& line)
{
    if (!line.isTooLong)
        return answer(line.text);
    sendError("null",
        RPCError(
            RPCError::parseError, "a line of more than " + std::to_string(longestLine) + " bytes"));
}

void Server::answer(const std::string& line)
{
    Request request;
    const auto refuse = [&](const RPCError& error) {
        if (!request.isNotification)
            sendError(request.id, error);
    };
    try {
        readRequest(line, request);
        const auto result = _methods.call(request);
        if (!request.isNotification)
            sendResult(request.id, result);
    } catch (const RPCError& error) {
        refuse(error);
    } catch (const std::exception& error) {
        refuse(RPCError(RPCError::internalError, error.what()));
    }
}

} // namespace tool
