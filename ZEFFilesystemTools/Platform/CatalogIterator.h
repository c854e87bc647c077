// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/CatalogEntry.h"
#include "ZEFFilesystemTools/Platform/KnownEntries.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace zef {

/// The results of reading a folder; others may occur.
namespace CatalogResult {
inline constexpr std::int16_t noError = 0;
inline constexpr std::int16_t ioError = -36;
inline constexpr std::int16_t tooManyOpenFiles = -42;
inline constexpr std::int16_t notFound = -43;
inline constexpr std::int16_t outOfMemory = -108;
inline constexpr std::int16_t badReference = -1401;
inline constexpr std::int16_t notAFolder = -1407;
inline constexpr std::int16_t noMoreItems = -1417;
inline constexpr std::int16_t accessDenied = -5000;
} // namespace CatalogResult

/// Reads the entries of one folder, in the file system's order, without "." and "..".
///
/// An entry that is there from beginning to end is delivered exactly once. One thread at a time.
class CatalogIterator {
public:
    virtual ~CatalogIterator() = default;

    /// Fills `entries` from the front and sets `count` to how many there are. Returns
    /// `noError` while there may be more, `noMoreItems` with the last ones (perhaps none),
    /// `accessDenied` for a folder that may not be read, or another error.
    virtual std::int16_t next(std::span<CatalogEntry> entries, std::size_t& count) = 0;

    /// From now on entries that `known` (borrowed) knows are left out.
    virtual void setKnownEntries(KnownEntries* known) = 0;
};

} // namespace zef
