// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Notifier/ChangeNotifier.h"

#include "ZEFFilesystemTools/Platform/Notifier/InotifyNotifier.h"
#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

namespace zef {

ChangeNotifier& ChangeNotifier::system()
{
    return immortal<InotifyNotifier>();
}

} // namespace zef
