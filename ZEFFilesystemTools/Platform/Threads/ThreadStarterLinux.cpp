// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Threads/ThreadStarter.h"

#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

#include <csignal>
#include <cstddef>
#include <memory>
#include <string>

#include <pthread.h>

namespace zef {
namespace {

struct Body {
    std::string name;
    std::function<void()> function;
};

void* runBody(void* argument)
{
    const std::unique_ptr<Body> body(static_cast<Body*>(argument));
    pthread_setname_np(pthread_self(), body->name.c_str());
    body->function();
    return nullptr;
}

// Signals that a fault of the thread itself raises stay open: blocked, they would end the process
// without the host's crash reporter having its say.
sigset_t signalsOfTheProcess()
{
    sigset_t signals;
    sigfillset(&signals);
    for (const auto fault : { SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS, SIGABRT })
        sigdelset(&signals, fault);
    return signals;
}

class KernelThreadStarter final : public ThreadStarter {
public:
    KernelThreadStarter()
    {
        constexpr std::size_t stackSize = std::size_t(8) << 20;
        pthread_attr_init(&_attributes);
        pthread_attr_setdetachstate(&_attributes, PTHREAD_CREATE_DETACHED);
        pthread_attr_setstacksize(&_attributes, stackSize);
    }

    bool start(const char* name, std::function<void()> function) override
    {
        auto body = std::make_unique<Body>(Body{ name, std::move(function) });
        // A thread is born with its creator's mask: in this way no signal can slip in before the
        // thread has blocked it.
        sigset_t creatorsMask;
        pthread_sigmask(SIG_BLOCK, &_blockedSignals, &creatorsMask);
        pthread_t thread;
        const auto error = pthread_create(&thread, &_attributes, runBody, body.get());
        pthread_sigmask(SIG_SETMASK, &creatorsMask, nullptr);
        if (error)
            return false;
        static_cast<void>(body.release());
        return true;
    }

private:
    pthread_attr_t _attributes;
    const sigset_t _blockedSignals = signalsOfTheProcess();
};

} // namespace

ThreadStarter& ThreadStarter::system()
{
    return immortal<KernelThreadStarter>();
}

} // namespace zef
