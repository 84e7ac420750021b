// Walking over the entries of a map.

#pragma once

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

// Makes the entry of the key, which there is, the newest of its bucket. Allocates nothing.
void moveToEnd(ZorMapEntry** map, ZorString const* key);

} // namespace zor_internal
