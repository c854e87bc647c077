// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/FileItems/ZEFFileItem.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

/// The answers that one basic info item keeps. Any thread; nothing is locked while an answer is
/// computed.
///
/// A listing of a large folder makes one of these an entry, so what is true or false is a bit here,
/// and everything else lies on the heap once somebody has asked.
class ZEF_EXPORT ZEFBasicInfoAnswers {
public:
    enum Flag : std::uint8_t {
        application = 1,
        volumesDirectory = 2,
        rootDirectory = 4,
        directory = 8,
        package = 16,
        invisible = 32,
        alias = 64,
    };

    /// What an alias or a link leads to, or the file itself.
    struct Target {
        zef::FSRef ref;
        /// Where that was when it was found.
        zef::FileURL url;
        bool isUsable = false;
        bool isFolder = false;
        bool wasAliased = false;
        /// False in one that was kept.
        bool isNew = true;
    };

    struct Details {
        std::optional<std::string> fileName;
        std::optional<std::string> displayName;
        std::optional<std::string> uti;
        std::optional<std::string> resolvedUTI;
        std::optional<std::string> resolvedPath;
        std::optional<zef::FileURL> resolvedURL;
        /// A null reference stands for the item itself, which would never die if it owned itself.
        std::optional<zef::Ref<ZEFFileItem>> resolvedFile;
        std::optional<Target> target;
    };

    /// The answer to `question`, one or more flags or a member of `Details`: the one that is kept,
    /// or what `make` computes. That is kept unless it is empty or `forget` was called meanwhile.
    template <typename Question, typename Make> auto ask(Question question, Make&& make)
    {
        std::uint16_t generation = 0;
        {
            std::lock_guard lock(_lock);
            if (auto known = find(question))
                return known;
            generation = _generation;
        }
        decltype(find(question)) made = std::forward<Make>(make)();
        std::lock_guard lock(_lock);
        // What another thread has kept meanwhile stays: nothing may die while this is locked.
        if (made && generation == _generation && !find(question))
            keep(question, *made);
        return made;
    }

    /// The answer that is kept; empty if there is none.
    template <typename Question> auto known(Question question) const
    {
        std::lock_guard lock(_lock);
        return find(question);
    }

    bool isTypeKnown() const
    {
        std::lock_guard lock(_lock);
        return _details && _details->uti;
    }

    /// Drops these flags, and lets `drop` take from the details, if there are any, what it likes.
    template <typename Drop> void forget(std::uint8_t flags, Drop&& drop)
    {
        std::lock_guard lock(_lock);
        ++_generation;
        _knownFlags &= static_cast<std::uint8_t>(~flags);
        if (_details)
            std::forward<Drop>(drop)(*_details);
    }

private:
    std::optional<std::uint8_t> find(std::uint8_t flags) const
    {
        const bool areKnown = (_knownFlags & flags) == flags;
        return areKnown ? std::optional<std::uint8_t>(_flags & flags) : std::nullopt;
    }

    template <typename Value> std::optional<Value> find(std::optional<Value> Details::*detail) const
    {
        return _details ? (*_details).*detail : std::nullopt;
    }

    void keep(std::uint8_t flags, std::uint8_t set)
    {
        _knownFlags |= flags;
        _flags = static_cast<std::uint8_t>((_flags & ~flags) | set);
    }

    template <typename Value> void keep(std::optional<Value> Details::*detail, const Value& value)
    {
        if (!_details)
            _details = std::make_unique<Details>();
        (*_details).*detail = value;
    }

    // An alias file shows that it is one when it is followed.
    void keep(std::optional<Target> Details::*detail, Target target)
    {
        target.isNew = false;
        keep<Target>(detail, target);
        if (target.isUsable)
            keep(alias, target.wasAliased ? alias : 0);
    }

    std::unique_ptr<Details> _details;
    mutable zef::ByteLock _lock;
    std::uint8_t _knownFlags = 0;
    std::uint8_t _flags = 0;
    /// Changes with each `forget`, so that no answer that was on its way is kept.
    std::uint16_t _generation = 0;
};
