// SPDX-License-Identifier: MIT

// A program with a main loop of its own watches a folder: `embedding-with-poll FOLDER`.
//
// The library needs no thread and no loop of its own. It has timers, and one descriptor that says
// when they want to be looked at: whatever waits for descriptors already (poll here, but epoll,
// GLib, Qt or libuv do as well) waits for that one too. Type a line to see that both are served;
// an empty line or the end of the input ends the program.

#include "ZEFFilesystemTools/ZEFFilesystemTools.h"

#include <cstdio>
#include <string>

#include <poll.h>
#include <unistd.h>

namespace {

const char* nameOfEvent(ZEFFileEvent event)
{
    switch (event) {
    case ZEFFileEvent::moved:
        return "moved";
    case ZEFFileEvent::renamed:
        return "renamed";
    case ZEFFileEvent::removed:
        return "removed";
    case ZEFFileEvent::updated:
        return "updated";
    case ZEFFileEvent::appeared:
        return "appeared";
    case ZEFFileEvent::movedInParent:
        return "moved in parent";
    }
    return "";
}

/// Prints what happens in the folder.
class Printer final : public ZEFObject, public ZEFDirectorySubscriptionProtocol {
public:
    void directorySubscriptionFoundChanges(
        ZEFDirectorySubscription*, ZEFChangeArray* changes) override
    {
        for (const auto& record : *changes) {
            const auto url = record->file()->url();
            const auto text = url ? url.absoluteString() : "(a file that is gone)";
            std::printf("%-15s  %s\n", nameOfEvent(record->event()), text.c_str());
        }
    }
};

/// Reads what the user typed; NO when the program is to end.
bool answerUser()
{
    char bytes[512];
    const auto count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 1)
        return false;
    std::printf("you typed %zd characters\n", count - 1);
    return true;
}

/// The program's own loop: it does whatever it did before, and looks after the library beside that.
void runLoopOfTheHost()
{
    auto& runLoop = zef::RunLoop::current();
    pollfd watched[] = {
        { STDIN_FILENO, POLLIN, 0 },
        { runLoop.descriptor(), POLLIN, 0 },
    };
    while (poll(watched, std::size(watched), -1) >= 0) {
        if (watched[0].revents && !answerUser())
            return;
        if (watched[1].revents)
            runLoop.perform(); // never waits; the subscribers are called from here
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", arguments[0]);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);

    auto* manager = ZEFFileManager::defaultFileManager();
    manager->setPollingInterval(0.5);
    const auto printer = zef::makeRef<Printer>();
    const auto* subscription = manager->subscribeForPath(printer.get(), arguments[1]);
    if (!subscription) {
        std::fprintf(stderr, "%s is no folder that can be watched\n", arguments[1]);
        return 1;
    }

    std::printf("watching %zu files in %s\n", subscription->files()->count(),
        subscription->path()->c_str());
    runLoopOfTheHost();

    // Subscribers are not kept alive by what they subscribe to, so they leave before they die.
    manager->unsubscribe(printer.get());
    manager->shutdown();
    return 0;
}
