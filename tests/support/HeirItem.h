// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/NotedItem.h"

/// A subclass of `NotedItem` that adds nothing to its archives.
class HeirItem final : public NotedItem {
public:
    static const ZEFFileItemClass classObject;
    const ZEFFileItemClass& objectClass() const override { return classObject; }

    using NotedItem::NotedItem;
};

inline const ZEFFileItemClass HeirItem::classObject(
    "HeirItem", &NotedItem::classObject, ZEFFileItemClass::initializer<HeirItem>);
