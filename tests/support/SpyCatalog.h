// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Catalog/Catalog.h"

#include <atomic>
#include <functional>
#include <utility>

/// The real catalog, whose reads the test counts, holds up and lets fail. Replaces the shared one
/// while it lives. Set the hooks while nobody reads; they are called on the readers' threads.
class SpyCatalog final : public zef::Catalog {
public:
    SpyCatalog() { replaceShared(this); }
    ~SpyCatalog() override { replaceShared(nullptr); }
    SpyCatalog(const SpyCatalog&) = delete;
    SpyCatalog& operator=(const SpyCatalog&) = delete;

    /// Called before a folder is opened, counted, and before each batch is read from it.
    std::function<void()> beforeOpening;
    std::function<void()> beforeCounting;
    std::function<void()> beforeBatch;

    /// What opening and counting answer instead of asking the system; `none` asks it.
    std::atomic<zef::FileError> openResult{ zef::FileError::none };
    std::atomic<zef::FileError> countResult{ zef::FileError::none };

    /// How often folders were opened, and how many iterators live.
    std::atomic<int> openCount{ 0 };
    std::atomic<int> iteratorCount{ 0 };

    zef::CatalogIterator::Opened openIterator(
        const zef::FSRef* ref, const zef::FileURL& folder) override
    {
        call(beforeOpening);
        ++openCount;
        if (openResult != zef::FileError::none)
            return openResult.load();
        auto opened = system().openIterator(ref, folder);
        if (!opened)
            return opened;
        return { std::make_unique<Iterator>(*this, *std::move(opened)) };
    }

    zef::Expected<std::size_t> countEntries(
        const zef::FSRef* ref, const zef::FileURL& folder) override
    {
        call(beforeCounting);
        return countResult == zef::FileError::none ? system().countEntries(ref, folder)
                                                   : countResult.load();
    }

private:
    class Iterator final : public zef::CatalogIterator {
    public:
        Iterator(SpyCatalog& catalog, std::unique_ptr<zef::CatalogIterator> iterator)
            : _catalog(catalog)
            , _iterator(std::move(iterator))
        {
            ++_catalog.iteratorCount;
        }

        ~Iterator() override { --_catalog.iteratorCount; }

        zef::FileError next(std::span<zef::CatalogEntry> entries, std::size_t& count) override
        {
            call(_catalog.beforeBatch);
            return _iterator->next(entries, count);
        }

        void setKnownEntries(zef::KnownEntries* known) override
        {
            _iterator->setKnownEntries(known);
        }

    private:
        SpyCatalog& _catalog;
        std::unique_ptr<zef::CatalogIterator> _iterator;
    };

    static void call(const std::function<void()>& hook)
    {
        if (hook)
            hook();
    }
};
