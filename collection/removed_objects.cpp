#include "collection/removed_objects.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>

#include "foundation/constinit.h"
#include "foundation/map_index.h"

namespace zor_internal {
namespace {

ZorString* schemaName(void const* schema) {
    return static_cast<ZorSchema const*>(schema)->rootNode->name;
}

ZorString* documentName(void const* document) {
    return static_cast<ZorDocument const*>(document)->name;
}

ZorString* collectionName(void const* collection) {
    return static_cast<ZorCollection const*>(collection)->name;
}

template <typename T>
void destroy(void* object) {
    delete static_cast<T*>(object);
}

// Where an object stands in the chain.
struct Place {
    void const* object;
    std::size_t position;
    ZorMapEntry* entry;
};

template <typename T>
int compare(T a, T b) {
    std::less<T> const before;
    return int(before(b, a)) - int(before(a, b));
}

// By object, and the places of one object in the order of the chain.
int comparePlaces(void const* a, void const* b) {
    auto const* const left = static_cast<Place const*>(a);
    auto const* const right = static_cast<Place const*>(b);
    int const byObject = compare(left->object, right->object);
    return byObject != 0 ? byObject : compare(left->position, right->position);
}

// The same without memory, in the square of the time.
void forgetRepeatedSlowly(ZorMapEntry const* first) {
    for (ZorMapEntry const* kept = first; kept; kept = kept->next) {
        for (ZorMapEntry* entry = kept->next; entry; entry = entry->next) {
            if (entry->value == kept->value) entry->value = nullptr;
        }
    }
}

} // namespace

ZOR_CONSTINIT ObjectKind const kSchemas = {schemaName, destroy<ZorSchema>};
ZOR_CONSTINIT ObjectKind const kDocuments = {documentName, destroy<ZorDocument>};
ZOR_CONSTINIT ObjectKind const kCollections = {collectionName, destroy<ZorCollection>};

void forgetRepeated(ZorMapEntry* first) {
    std::size_t count = 0;
    for (ZorMapEntry const* entry = first; entry; entry = entry->next) ++count;
    std::unique_ptr<Place[]> const places(new (std::nothrow) Place[count]);
    if (!places) return forgetRepeatedSlowly(first);
    Place* end = places.get();
    for (ZorMapEntry* entry = first; entry; entry = entry->next, ++end) {
        *end = {entry->value, static_cast<std::size_t>(end - places.get()), entry};
    }
    std::qsort(places.get(), count, sizeof(Place), comparePlaces);
    for (Place* place = places.get(); place + 1 < end; ++place) {
        if (place[1].object == place->object) place[1].entry->value = nullptr;
    }
}

Removed::~Removed() {
    if (isAliased) forgetRepeated(first);
    while (ZorMapEntry* const entry = first) {
        first = entry->next;
        void* const object = entry->value;
        freeEntry(entry);
        if (object) kind.destroy(object);
    }
}

void Removed::takeIf(ZorMapEntry** map, bool (*isWanted)(void const* object, void const* context),
                     void const* context) {
    ZorMapEntry** last = &first;
    for (unsigned i = 0; i < kBucketCount; ++i) {
        for (ZorMapEntry** link = &map[i]; *link;) {
            ZorMapEntry* const entry = *link;
            if (!entry->value || (isWanted && !isWanted(entry->value, context))) {
                link = &entry->next;
                continue;
            }
            MapIndex::drop(map);
            isAliased = isAliased || zor_stringCompare(entry->key, kind.ownName(entry->value)) != 0;
            *link = entry->next;
            entry->next = nullptr;
            *last = entry;
            last = &entry->next;
        }
    }
}

} // namespace zor_internal
