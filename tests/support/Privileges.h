// SPDX-License-Identifier: MIT
#pragma once

#include <string>

/// Whether the process may open the object at `path` by its handle (CAP_DAC_READ_SEARCH, on a file
/// system that has such handles), and so finds it wherever it is moved.
bool mayOpenByHandle(const std::string& path);

/// Whether files and folders without any permission are open to the process (CAP_DAC_OVERRIDE).
bool ignoresPermissions();
