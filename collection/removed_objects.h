// Objects of a collection that are on their way out of it.

#pragma once

#include <cstring>

#include "foundation/map_entries.h"
#include "zor/collection.h"

namespace zor_internal {

// What the object calls itself, which need not be the key it is stored under.
inline ZorString* ownName(ZorSchema const* schema) { return schema->rootNode->name; }
inline ZorString* ownName(ZorDocument const* document) { return document->name; }
inline ZorString* ownName(ZorCollection const* collection) { return collection->name; }

// Leaves every object of a chain of entries in one of them, the first. Cannot fail.
void forgetRepeated(ZorMapEntry* first);

// Objects that are removed from a map to be deleted: in the order of the map, and each once, even
// one that was stored under two names. Nothing can fail half-way, so that destructors may use it:
// the objects stay with their entries, which form a chain. Used once.
template <typename T>
class Removed {
public:
    Removed() = default;
    Removed(Removed const&) = delete;
    Removed& operator=(Removed const&) = delete;
    ~Removed() {
        if (isAliased) forgetRepeated(first);
        while (ZorMapEntry* const entry = first) {
            first = entry->next;
            auto* const object = static_cast<T*>(entry->value);
            freeEntry(entry);
            delete object;
        }
    }

    // Removes the entries with the objects for which `isWanted` is true.
    template <typename Predicate>
    void takeIf(ZorMapEntry** map, Predicate isWanted) {
        ZorMapEntry** last = &first;
        for (unsigned i = 0; i < kBucketCount; ++i) {
            for (ZorMapEntry** link = &map[i]; *link;) {
                ZorMapEntry* const entry = *link;
                auto const* const object = static_cast<T const*>(entry->value);
                if (!object || !isWanted(object)) {
                    link = &entry->next;
                    continue;
                }
                isAliased = isAliased || std::strcmp(entry->key->text, ownName(object)->text) != 0;
                *link = entry->next;
                entry->next = nullptr;
                *last = entry;
                last = &entry->next;
            }
        }
    }

private:
    ZorMapEntry* first = nullptr;
    bool isAliased = false; // one has another name than its own, so perhaps both
};

} // namespace zor_internal
