// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <functional>
#include <string>

namespace zef {

/// Gives the text for `key` in the user's language; the key itself where there is none. May be
/// called on any thread, several at once.
using Localizer = std::function<std::string(const std::string& key)>;

/// The text for `key`, from the host's localizer. The only key that the library asks for is
/// "Computer". Any thread; calls the localizer with no lock held.
ZEF_EXPORT std::string localizedString(const std::string& key);

/// Lets `localizer` translate from now on; an empty one gives back the default, which is
/// gettext(3) with the host's text domain. Returns the one until now, empty for the default. Any
/// thread.
ZEF_EXPORT Localizer setLocalizer(Localizer localizer);

} // namespace zef
