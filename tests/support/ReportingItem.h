// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <atomic>
#include <functional>
#include <string>

/// A host's file item that calls a hook for its events, and counts the live ones of its class.
class ReportingItem final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    /// Called with each record that an item is sent.
    using Hook = std::function<void(ReportingItem&, const ZEFChangeRecord&)>;
    inline static Hook hook;

    /// The number of these items that live.
    inline static std::atomic<int> liveCount{ 0 };

    ReportingItem(const zef::FileURL& url, const zef::FSRef* fsRef, const zef::FileURL& pathRep,
        const zef::Stat* statInfo)
        : ZEFFileItem(url, fsRef, pathRep, statInfo)
        , _firstName(url.lastPathComponent())
    {
        ++liveCount;
    }

    /// The name that the file had when the item was made.
    const std::string& firstName() const { return _firstName; }

    void updateForEvent(const ZEFChangeRecord* record) override
    {
        // The hook may replace itself.
        if (const auto current = hook)
            current(*this, *record);
    }

protected:
    ~ReportingItem() override { --liveCount; }

private:
    std::string _firstName;
};

inline const ZEFFileItemClass ReportingItem::classObject(
    "ReportingItem", &ZEFFileItem::classObject, ZEFFileItemClass::initializer<ReportingItem>);
