// Objects of a collection that are on their way out of it.

#pragma once

#include "foundation/map_entries.h"
#include "zor/collection.h"

namespace zor_internal {

// What a collection holds in one of its maps.
struct ObjectKind {
    // What the object calls itself, which need not be the key it is stored under.
    ZorString* (*ownName)(void const* object);
    void (*destroy)(void* object);
};

extern ObjectKind const kSchemas;
extern ObjectKind const kDocuments;
extern ObjectKind const kCollections;

// Leaves every object of a chain of entries in one of them, the first. Cannot fail.
void forgetRepeated(ZorMapEntry* first);

// Objects that are removed from a map to be deleted: in the order of the map, and each once, even
// one that was stored under two names. Nothing can fail half-way, so that destructors may use it:
// the objects stay with their entries, which form a chain. Used once.
class Removed {
public:
    explicit Removed(ObjectKind const& removedKind) : kind(removedKind) {}
    Removed(Removed const&) = delete;
    Removed& operator=(Removed const&) = delete;
    ~Removed();

    // Removes the entries with the objects for which `isWanted(object, context)` is true, or with
    // all when that is null.
    void takeIf(ZorMapEntry** map, bool (*isWanted)(void const* object, void const* context),
                void const* context);

private:
    ObjectKind const& kind;
    ZorMapEntry* first = nullptr;
    // One is stored under another name than its own, perhaps also under both.
    bool isAliased = false;
};

} // namespace zor_internal
