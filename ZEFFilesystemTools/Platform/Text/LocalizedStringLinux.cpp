// SPDX-License-Identifier: MIT
#include "ZEFFilesystemTools/Platform/Text/LocalizedString.h"

#include "ZEFFilesystemTools/Platform/Objects/Immortal.h"

#include <mutex>
#include <utility>

#include <libintl.h>

namespace zef {
namespace {

struct CurrentLocalizer {
    std::mutex mutex;
    Localizer localizer;
};

CurrentLocalizer& current()
{
    return immortal<CurrentLocalizer>();
}

} // namespace

std::string localizedString(const std::string& key)
{
    Localizer localizer;
    {
        std::lock_guard lock(current().mutex);
        localizer = current().localizer;
    }
    return localizer ? localizer(key) : ::gettext(key.c_str());
}

Localizer setLocalizer(Localizer localizer)
{
    std::lock_guard lock(current().mutex);
    return std::exchange(current().localizer, std::move(localizer));
}

} // namespace zef
