// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/Export.h"

#include <cstdint>

namespace zef {

/// The results of reading a folder; others may occur.
struct ZEF_EXPORT CatalogResult {
    static constexpr std::int16_t noError = 0;
    static constexpr std::int16_t ioError = -36;
    static constexpr std::int16_t tooManyOpenFiles = -42;
    static constexpr std::int16_t notFound = -43;
    static constexpr std::int16_t outOfMemory = -108;
    static constexpr std::int16_t badReference = -1401;
    static constexpr std::int16_t notAFolder = -1407;
    static constexpr std::int16_t noMoreItems = -1417;
    static constexpr std::int16_t accessDenied = -5000;
};

} // namespace zef
