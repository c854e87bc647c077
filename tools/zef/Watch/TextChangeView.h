// SPDX-License-Identifier: MIT
#pragma once

#include "tools/zef/Paint.h"
#include "tools/zef/Watch/ChangeView.h"

#include <string>

namespace tool {

/// For people: a line for each change, in columns.
class TextChangeView final : public ChangeView {
public:
    /// With several folders each group of changes stands below the name of its folder.
    explicit TextChangeView(bool showsHeadings, Paint paint = Paint())
        : _showsHeadings(showsHeadings)
        , _paint(paint)
    {
    }

    std::string textOfFolder(const WatchedFolder&) override;
    std::string textOfLoaded(const WatchedFolder&) override;
    std::string textOfChanges(const WatchedFolder&, const ZEFChangeArray&) override;

private:
    std::string line(const WatchedFolder&, const ZEFChangeRecord&) const;
    std::string newHeading(const WatchedFolder&);

    bool _showsHeadings;
    Paint _paint;
    std::string _heading;
};

} // namespace tool
