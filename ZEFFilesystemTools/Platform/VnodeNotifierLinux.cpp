// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/VnodeNotifier.h"

#include "ZEFFilesystemTools/Platform/InotifyNotifier.h"

namespace zef {

VnodeNotifier& VnodeNotifier::system()
{
    static auto& notifier = *new InotifyNotifier; // never destroyed: late threads may still ask
    return notifier;
}

} // namespace zef
