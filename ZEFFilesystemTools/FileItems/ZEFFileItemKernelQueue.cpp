// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"
#include "ZEFFilesystemTools/Platform/Text/Log.h"
#include "ZEFFilesystemTools/Platform/Time/Clock.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

void ZEFFileItem::initKQueue()
{
    endKQueue();
    auto& notifier = zef::ChangeNotifier::shared();
    if (notifier.createQueue() < 0) {
        zef::log("Error opening kernel queue.");
        return;
    }
    _kernelQueue = isValid() ? notifier.open(identity(), _pathURL) : 0;
    if (_kernelQueue > 0)
        return;
    _kernelQueue = 0;
    zef::log("Error getting file descriptor for file %s",
        _pathURL ? _pathURL.absoluteString().c_str() : "(null)");
}

void ZEFFileItem::endKQueue()
{
    if (_kernelQueue < 0)
        return;
    // What has happened until now must not get lost when the watch begins anew.
    if (_kernelQueue > 0) {
        ZEF_checkKQueue();
        zef::ChangeNotifier::shared().close(_kernelQueue);
    }
    _kernelQueue = -1;
}

void ZEFFileItem::ZEF_checkKQueue()
{
    const int events = zef::ChangeNotifier::shared().poll(_kernelQueue, identity(), _pathURL);
    if (events < 0) {
        zef::log(
            "An error occurred (event count %d).  The error was %s.", events, std::strerror(errno));
        return;
    }
    if (!events)
        return;
    // Later than any event before, so that neither a clock that was set back nor one that stands
    // still hides it from an observer.
    const auto now = zef::Clock::shared().now().secondsSinceReferenceDate();
    _pathInfo.lastEventTime = std::max(now, std::nextafter(_pathInfo.lastEventTime, HUGE_VAL));
}
