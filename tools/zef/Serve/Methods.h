// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Serve/MethodTable.h"
#include "tools/zef/Serve/Session.h"

// Each adds some methods to a table; the session must outlive it.

namespace tool {

/// The methods about single files and what people are shown of them.
void addItemMethods(MethodTable&, Session&);
/// The methods that list folders.
void addLoadMethods(MethodTable&, Session&);
/// The methods about watched folders.
void addSubscriptionMethods(MethodTable&, Session&);
/// The methods about the file manager as a whole.
void addManagerMethods(MethodTable&, Session&);

} // namespace tool
