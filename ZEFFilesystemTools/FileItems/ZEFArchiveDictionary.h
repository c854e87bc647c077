// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/MutationError.h"
#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// Data: a lasting reference to the file, which leads to it after it was renamed or moved.
extern ZEF_EXPORT const char* const ZEFArchiveDataKey;
/// String: the path where the file was last seen.
extern ZEF_EXPORT const char* const ZEFArchivePathKey;

/// What a program keeps of a file item between its runs: values under string keys, in the order in
/// which the keys came. Mutable; one thread at a time.
class ZEF_EXPORT ZEFArchiveDictionary final : public ZEFObject {
public:
    using Bytes = std::vector<std::byte>;
    using Value = std::variant<std::string, Bytes, bool>;

    static const zef::Class classObject;
    const zef::Class& objectClass() const override { return classObject; }

    ZEFArchiveDictionary() = default;
    explicit ZEFArchiveDictionary(std::size_t capacity) { _entries.reserve(capacity); }

    std::size_t count() const { return _entries.size(); }
    bool isEmpty() const { return _entries.empty(); }

    /// Borrowed until the next change; null when nothing is under `key`.
    const Value* valueForKey(std::string_view key) const;
    /// The same for one kind of value; also null when another kind is under `key`.
    const std::string* stringForKey(std::string_view key) const;
    const Bytes* dataForKey(std::string_view key) const;
    /// False also if no boolean is under `key`.
    bool booleanForKey(std::string_view key) const;

    /// Puts `value` in the place of the one under `key`, if there is one.
    void setValueForKey(Value value, std::string_view key);
    void setStringForKey(std::string_view value, std::string_view key);
    void setDataForKey(Bytes value, std::string_view key);
    void setBooleanForKey(bool value, std::string_view key);
    void removeValueForKey(std::string_view key);

    /// Calls `visit` with each key and its value, in order. Throws `zef::MutationError` at the
    /// first step after the dictionary was changed during the walk.
    template <typename Visit> void enumerate(Visit&& visit) const
    {
        const auto mutations = _mutations;
        const auto entries = _entries;
        for (const auto& [key, value] : entries) {
            visit(key, value);
            if (mutations != _mutations)
                throw zef::MutationError();
        }
    }

    /// Returns true if `other` is an archive dictionary with equal values under the same keys, in
    /// whatever order.
    bool isEqual(const ZEFObject* other) const override;
    std::size_t hash() const override;
    /// Data is shown by its length.
    std::string description() const override;

private:
    using Entry = std::pair<std::string, Value>;

    std::vector<Entry> _entries;
    std::size_t _mutations = 0;
};
