// Objects of a collection that are on their way out of it.

#pragma once

#include <cstring>
#include <new>
#include <set>

#include "foundation/map_entries.h"
#include "zor/collection.h"

namespace zor_internal {

// What the object calls itself, which need not be the key it is stored under.
inline ZorString* ownName(ZorSchema const* schema) { return schema->rootNode->name; }
inline ZorString* ownName(ZorDocument const* document) { return document->name; }
inline ZorString* ownName(ZorCollection const* collection) { return collection->name; }

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
        if (isAliased) forgetRepeated();
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
    // Leaves every object in one entry, the first. Only one that is stored under another name than
    // its own may be in several.
    void forgetRepeated() {
        try {
            std::set<void const*> seen;
            for (ZorMapEntry* entry = first; entry; entry = entry->next) {
                if (!seen.insert(entry->value).second) entry->value = nullptr;
            }
        } catch (std::bad_alloc const&) {
            forgetRepeatedSlowly();
        }
    }

    // The same without memory, in the square of the time.
    void forgetRepeatedSlowly() {
        for (ZorMapEntry const* kept = first; kept; kept = kept->next) {
            for (ZorMapEntry* entry = kept->next; entry; entry = entry->next) {
                if (entry->value == kept->value) entry->value = nullptr;
            }
        }
    }

    ZorMapEntry* first = nullptr;
    bool isAliased = false;
};

} // namespace zor_internal
