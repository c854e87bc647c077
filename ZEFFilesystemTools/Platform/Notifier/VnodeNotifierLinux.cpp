// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/VnodeNotifier.h"

#include "ZEFFilesystemTools/Platform/Notifier/InotifyNotifier.h"

namespace zef {

VnodeNotifier& VnodeNotifier::system()
{
    static auto& notifier = *new InotifyNotifier; // never destroyed: late threads may still ask
    return notifier;
}

} // namespace zef
