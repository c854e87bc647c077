// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace tool {

/// A file item with a number by which programs in other languages know it. The number stays with
/// the object for as long as it lives and is never given to another.
///
/// To the library and to its users it is a `ZEFFileItem`, by name too.
class NumberedFileItem final : public ZEFFileItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    NumberedFileItem(const zef::FileURL& url, const zef::FSRef* fsRef, const zef::FileURL& pathRep,
        const zef::Stat* statInfo);

    /// Any thread.
    std::uint64_t number() const { return _number; }

    // Observers that are known by names instead of objects.

    bool registerObserverNamed(const std::string& name);
    bool removeObserverNamed(const std::string& name);
    bool hasObserverNamed(const std::string& name) const;
    ZEFFileChanges changesForObserverNamed(const std::string& name);
    /// The event that was delivered, if one was.
    std::optional<ZEFFileEvent> updateForObserverNamed(const std::string& name);

    void updateForEvent(const ZEFChangeRecord*) override;

private:
    class Observer;
    using Observers = std::map<std::string, zef::Ref<Observer>>;

    ~NumberedFileItem() override;

    Observer* observerNamed(const std::string& name);

    std::uint64_t _number;
    /// Made with the first one: most items have none.
    std::unique_ptr<Observers> _observers;
    std::optional<ZEFFileEvent> _lastEvent;
};

/// The number of an item of the program's.
std::uint64_t numberOf(const ZEFFileItem&);

} // namespace tool
