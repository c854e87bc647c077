// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include "ZEFFilesystemTools/Platform/Notifier/InotifyNotifier.h"

namespace zef {

ChangeNotifier& ChangeNotifier::system()
{
    static auto& notifier = *new InotifyNotifier; // never destroyed: late threads may still ask
    return notifier;
}

} // namespace zef
