// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileManager/ZEFFileManager.h"
#include "ZEFFilesystemTools/Platform/RunLoop/RunLoop.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"

#include "tools/zef/Commands.h"
#include "tools/zef/ExitStatus.h"
#include "tools/zef/FileClasses.h"
#include "tools/zef/LineInput.h"
#include "tools/zef/MainLoop.h"
#include "tools/zef/Output.h"
#include "tools/zef/Serve/Message.h"
#include "tools/zef/Serve/Methods.h"

#include <unistd.h>

namespace tool {
namespace {

constexpr std::size_t longestLine = std::size_t{ 64 } * 1024 * 1024;

// Answers the requests of one client on standard input and output. The run loop turns while no
// request is waiting.
class Server {
public:
    // `fileClass` is the class of the file items until a client chooses another.
    explicit Server(const ZEFFileItemClass& fileClass);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Serves until the input ends, a client or a signal asks for the end, or nobody reads any more.
    // Returns the program's exit status.
    int run();

private:
    bool isDone() const;
    void answerLines();
    void answer(const LineInput::Line&);
    void answer(const std::string& line);

    Session _session;
    MethodTable _methods;
    LineInput _input{ longestLine };
};

Server::Server(const ZEFFileItemClass& fileClass)
{
    zef::setLogSink(
        [](std::string_view line) { sendNotification("log", JSONObject().add("message", line)); });
    ZEFFileManager::defaultFileManager()->setFileClass(&fileClass);
    addItemMethods(_methods, _session);
    addLoadMethods(_methods, _session);
    addSubscriptionMethods(_methods, _session);
    addManagerMethods(_methods, _session);
}

// Subscriptions die first: they still know the subscribers.
Server::~Server()
{
    for (const auto& [number, load] : _session.loads)
        load->cancel();
    _session.subscribers.forgetSubscriptions();
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
            _session.subscribers.forgetDropped();
        }
    }
    return mustEnd() ? statusOfEnd() : ExitStatus::done;
}

bool Server::isDone() const
{
    return _input.hasEnded() || _session.isShutDown || mustEnd();
}

void Server::answerLines()
{
    while (!_session.isShutDown && !mustEnd()) {
        const auto line = _input.takeLine();
        if (!line)
            return;
        answer(*line);
    }
}

void Server::answer(const LineInput::Line& line)
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

} // namespace

int run(const ServeOptions& options)
{
    return Server(FileClasses::chosen(options.plain)).run();
}

} // namespace tool
