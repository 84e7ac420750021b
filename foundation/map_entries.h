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

// Removes the entries for which `isUnwanted` is true. The values are not freed.
template <typename Predicate>
void removeEntriesIf(ZorMapEntry** map, Predicate isUnwanted) {
    for (unsigned i = 0; i < kBucketCount; ++i) {
        for (ZorMapEntry** link = &map[i]; *link;) {
            ZorMapEntry* const entry = *link;
            if (!isUnwanted(*entry)) {
                link = &entry->next;
                continue;
            }
            *link = entry->next;
            freeEntry(entry);
        }
    }
}

} // namespace zor_internal
