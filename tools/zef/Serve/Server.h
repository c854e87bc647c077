// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/LineInput.h"
#include "tools/zef/Serve/ItemMethods.h"
#include "tools/zef/Serve/LoadMethods.h"
#include "tools/zef/Serve/ManagerMethods.h"
#include "tools/zef/Serve/MethodTable.h"
#include "tools/zef/Serve/SubscriptionMethods.h"

#include <string>

namespace tool {

/// Answers the requests of one client on standard input and output. The run loop turns while no
/// request is waiting.
class Server {
public:
    /// `fileClass` is the class of the file items until a client chooses another.
    explicit Server(const ZEFFileItemClass& fileClass);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Serves until the input ends, a client or a signal asks for the end, or nobody reads any
    /// more; then the file manager is shut down. Returns the program's exit status.
    int run();

private:
    static constexpr std::size_t longestLine = std::size_t{ 64 } * 1024 * 1024;

    bool isDone() const;
    void answerLines();
    void answer(const LineReader::Line&);
    void answer(const std::string& line);

    ItemMethods _items;
    LoadMethods _loads;
    SubscriptionMethods _subscriptions;
    ManagerMethods _manager;
    MethodTable _methods;
    LineInput _input{ longestLine };
};

} // namespace tool
