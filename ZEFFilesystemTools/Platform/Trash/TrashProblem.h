// SPDX-License-Identifier: MIT
#pragma once

namespace zef {

/// What keeps a file out of the trash; false if nothing does.
struct [[nodiscard]] TrashProblem {
    /// An errno value.
    int error = 0;
    /// A literal that says more than the system's own text for the error; null where that will do.
    const char* text = nullptr;

    explicit operator bool() const { return error != 0; }
    friend bool operator==(const TrashProblem&, const TrashProblem&) = default;
};

} // namespace zef
