// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <cstdint>

namespace zef {

/// Why something could not be done with a file, by the number that log lines give.
///
/// Values without a name may occur.
enum class [[nodiscard]] FileError : std::int16_t{
    none = 0,
    io = -36,
    tooManyOpenFiles = -42,
    notFound = -43,
    outOfMemory = -108,
    badReference = -1401,
    notAFolder = -1407,
    noMoreItems = -1417,
    accessDenied = -5000,
};

/// The number that a log line gives.
constexpr int numberOf(FileError error)
{
    return static_cast<int>(error);
}

/// The error that an errno value stands for where a folder is opened or read.
ZEF_EXPORT FileError fileErrorOfErrno(int error);

} // namespace zef
