// SPDX-License-Identifier: MIT
#pragma once

#include "ZEFFilesystemTools/Platform/Objects/ZEFObject.h"

#include <cstddef>
#include <vector>

class ZEFDirectorySubscriptionProtocol;

/// The subscribers of one folder: not retained, told apart by their own equality, in the order in
/// which they subscribed. One thread.
class ZEFSubscriberTable {
public:
    struct Entry {
        ZEFObject* object;
        ZEFDirectorySubscriptionProtocol* subscriber;
    };

    ZEFSubscriberTable();
    ~ZEFSubscriberTable();
    ZEFSubscriberTable(const ZEFSubscriberTable&) = delete;
    ZEFSubscriberTable& operator=(const ZEFSubscriberTable&) = delete;

    /// Enters `object` unless an equal one is there, or it doesn't conform to the protocol, or is
    /// null.
    void add(ZEFObject* object);
    void remove(const ZEFObject* object);

    bool contains(const ZEFObject* object) const;
    /// By address; doesn't touch `object`, which may have died meanwhile.
    bool containsIdentical(const ZEFObject* object) const;
    std::size_t count() const { return _entries.size(); }
    std::vector<Entry> snapshot() const { return _entries; }

private:
    std::vector<Entry>::const_iterator find(const ZEFObject* object) const;

    std::vector<Entry> _entries;
};
