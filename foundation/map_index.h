// A side index of a map that has grown: its chains stay as they are, and are not walked any more.
//
// A map has 256 chains, whatever it holds, so with thousands of entries a lookup would compare
// hundreds of keys. Whoever has walked past eight entries of a chain makes the index, which the map
// keeps behind its heads. It only saves time: where memory lacks, chains are walked.

#pragma once

#include "zor/containers.h"

namespace zor_internal {

class MapIndex {
public:
    // The index of a map, or null.
    static MapIndex* of(ZorMapEntry** map);
    // Makes the index of a map that has none; null, if there is no memory for it. Borrowed.
    static MapIndex* make(ZorMapEntry** map);
    // Destroys the index, if there is one: for whoever changes the chains by hand.
    static void drop(ZorMapEntry** map);

    MapIndex(MapIndex const&) = delete;
    MapIndex& operator=(MapIndex const&) = delete;

    // The entry of the key, or null.
    ZorMapEntry* find(unsigned hash, char const* key) const;

    // The link at the end of the chain of a hash, where a new entry is inserted.
    ZorMapEntry** endOf(unsigned hash) const;

    // Notes an entry that was inserted there. False if there is no memory for it.
    bool add(unsigned hash, ZorMapEntry* entry);

    // Notes that an entry was moved to the end of its chain.
    void noteLast(unsigned hash, ZorMapEntry* entry);

    // Forgets an entry that is about to be taken out of its chain, behind `before` or as the first.
    void remove(unsigned hash, ZorMapEntry const* entry, ZorMapEntry* before);

    // Whether the map has become so small that it needs none, or a smaller one.
    bool isSparse() const { return used * 16 < slotCount; }

private:
    struct Slot {
        unsigned hash;
        ZorMapEntry* entry; // null when the slot is free
    };

    explicit MapIndex(ZorMapEntry** indexed);
    ~MapIndex();

    unsigned slotOf(unsigned hash) const;
    unsigned next(unsigned at) const { return (at + 1) & (slotCount - 1); }
    unsigned distance(unsigned from, unsigned to) const { return (to - from) & (slotCount - 1); }
    void place(Slot const& slot);
    bool resize(unsigned wanted);

    ZorMapEntry** map;
    ZorMapEntry** lasts; // of each chain, or null
    Slot* slots;         // at most half of them in use; a search ends at the first free one
    unsigned slotCount;  // a power of two
    unsigned used;
};

} // namespace zor_internal
