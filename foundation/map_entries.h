// Walking over the entries of a map.

#pragma once

#include "foundation/map_index.h"
#include "zor/containers.h"
#include "zor/string.h"

namespace zor_internal {

constexpr unsigned kBucketCount = 256;

inline void freeEntry(ZorMapEntry* entry) {
    entry->key->removeRef();
    delete entry;
}

template <typename Visit>
void forEachEntry(ZorMapEntry** map, Visit visit) {
    for (unsigned i = 0; i < kBucketCount; ++i) {
        for (ZorMapEntry* entry = map[i]; entry; entry = entry->next) visit(*entry);
    }
}

// Takes all entries out of a map, passing their values to `release`.
template <typename Release>
void clearMap(ZorMapEntry** map, Release release) {
    MapIndex::drop(map);
    for (unsigned i = 0; i < kBucketCount; ++i) {
        while (ZorMapEntry* const entry = map[i]) {
            map[i] = entry->next;
            release(entry->value);
            freeEntry(entry);
        }
    }
}

// Makes the entry of the key, which there is, the newest of its bucket. Allocates nothing.
void moveToEnd(ZorMapEntry** map, ZorString const* key);

} // namespace zor_internal
