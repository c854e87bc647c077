// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace tool {

/// What every file item of the program has besides its being one: a number by which programs in
/// other languages know it, and observers that are known by names instead of objects.
///
/// The number stays with the object for as long as it lives and is never given to another.
class NumberedItem {
public:
    NumberedItem(const NumberedItem&) = delete;
    NumberedItem& operator=(const NumberedItem&) = delete;

    /// This side of an item of the program's.
    static NumberedItem& of(ZEFFileItem&);

    /// The item with this number; null when there never was one or it is gone. Any thread.
    static zef::Ref<ZEFFileItem> itemWithNumber(std::uint64_t number);

    /// Any thread.
    std::uint64_t number() const { return _number; }

    bool registerObserverNamed(const std::string& name);
    bool removeObserverNamed(const std::string& name);
    bool hasObserverNamed(const std::string& name) const;
    ZEFFileChanges changesForObserverNamed(const std::string& name);
    /// The event that was delivered, if one was.
    std::optional<ZEFFileEvent> updateForObserverNamed(const std::string& name);

protected:
    /// `item` is the object that this is a part of.
    explicit NumberedItem(ZEFFileItem& item);
    ~NumberedItem();

    void noteEvent(const ZEFChangeRecord*);

private:
    class Observer;
    using Observers = std::map<std::string, zef::Ref<Observer>>;

    Observer* observerNamed(const std::string& name);

    ZEFFileItem& _item;
    std::uint64_t _number;
    /// Made with the first one: most items have none.
    std::unique_ptr<Observers> _observers;
    std::optional<ZEFFileEvent> _lastEvent;
};

/// The number of an item of the program's.
std::uint64_t numberOf(const ZEFFileItem&);

} // namespace tool
