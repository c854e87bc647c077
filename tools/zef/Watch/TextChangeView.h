// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Paint.h"
#include "tools/zef/Watch/ChangeView.h"

#include <cstddef>
#include <string>

namespace tool {

/// Writes for people: a line for each change, in columns, with colours where they are welcome.
class TextChangeView final : public ChangeView {
public:
    /// With several folders each group of changes stands below the name of its folder.
    explicit TextChangeView(bool showsHeadings);

    void showFolder(const WatchedFolder&) override;
    void showLoaded(const WatchedFolder&) override;
    void showChanges(const WatchedFolder&, const ZEFChangeArray&) override;

private:
    std::string line(const WatchedFolder&, const ZEFChangeRecord&) const;
    void setHeading(const WatchedFolder&, std::string& text);

    bool _showsHeadings;
    Paint _paint;
    std::string _heading;
};

} // namespace tool
