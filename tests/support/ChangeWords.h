// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Subscriptions/ZEFDirectorySubscriptionProtocol.h"

#include "tests/support/ReportingItem.h"

#include <string>
#include <vector>

using Words = std::vector<std::string>;

/// The name that a file has now or, for one that is lost, had first.
inline std::string nameOf(const ZEFFileItem& item)
{
    if (const auto url = item.url())
        return url.lastPathComponent();
    const auto* reporting = dynamic_cast<const ReportingItem*>(&item);
    return reporting ? reporting->firstName() : "(lost)";
}

/// A change record in words: "renamed b".
inline std::string inWords(const ZEFChangeRecord& record)
{
    const auto word = [&record] {
        switch (record.event()) {
        case ZEFFileEvent::moved:
            return "moved ";
        case ZEFFileEvent::renamed:
            return "renamed ";
        case ZEFFileEvent::removed:
            return "removed ";
        case ZEFFileEvent::updated:
            return "updated ";
        case ZEFFileEvent::appeared:
            return "appeared ";
        case ZEFFileEvent::movedInParent:
            return "moved in parent ";
        }
        return "? ";
    };
    return word() + nameOf(*record.file());
}

inline Words inWords(const ZEFChangeArray& changes)
{
    Words words;
    for (const auto& record : changes)
        words.push_back(inWords(*record));
    return words;
}
