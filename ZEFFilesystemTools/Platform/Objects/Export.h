// SPDX-License-Identifier: MIT
#pragma once

/// Stands before what a host may use of the library; everything else is hidden in the shared
/// library. Types that cross the border have it too, so that both sides agree which type an
/// exception or a cast is of.
#define ZEF_EXPORT __attribute__((visibility("default")))

/// Stands before a class within one of those that is nobody's business outside the library.
#define ZEF_INTERNAL __attribute__((visibility("hidden")))
