// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

/// What a file browser asks GIO about its files, where GLib was there when this was built.
class GIOQuestions {
public:
    bool isThere() const;

    /// Asks for type, display name, hiddenness and link target of each file.
    void ask(const std::vector<std::string>& paths);
};
