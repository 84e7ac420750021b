// Maps: 256 chained buckets, in insertion order within a bucket.
//
// A map whose chains have become long gets an index beside them, see foundation/map_index.h.

#include "zor/containers.h"

#include <cstring>

#include "foundation/list_builder.h"
#include "foundation/map_entries.h"
#include "foundation/map_index.h"
#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "zor/string.h"

using zor_internal::clearMap;
using zor_internal::forEachEntry;
using zor_internal::freeEntry;
using zor_internal::kBucketCount;
using zor_internal::ListBuilder;
using zor_internal::MapIndex;
using zor_internal::stringOf;
using zor_internal::StringRef;
using zor_internal::textOf;

namespace {

constexpr unsigned kFnvPrime = 0x01000193;

// So many entries are walked over before an index is made.
constexpr int kShortWalk = 8;

ZorMapEntry** walk(ZorMapEntry** link, char const* key) {
    while (*link && std::strcmp((*link)->key->text, key) != 0) link = &(*link)->next;
    return link;
}

// The entry of a key, and where a new one goes when there is none.
struct Found {
    ZorMapEntry* entry;
    ZorMapEntry** end;
};

Found findIn(MapIndex const* index, unsigned hash, char const* key) {
    ZorMapEntry* const entry = index->find(hash, key);
    return {entry, entry ? nullptr : index->endOf(hash)};
}

Found find(ZorMapEntry** map, unsigned hash, char const* key) {
    if (MapIndex const* const index = MapIndex::of(map)) return findIn(index, hash, key);
    ZorMapEntry** link = &map[hash % kBucketCount];
    for (int i = 0; i < kShortWalk; ++i, link = &(*link)->next) {
        if (!*link || std::strcmp((*link)->key->text, key) == 0) return {*link, link};
    }
    if (MapIndex const* const index = MapIndex::make(map)) return findIn(index, hash, key);
    link = walk(link, key);
    return {*link, link};
}

// The characters of a key: of a plain text that is longer than any string, those that a string
// keeps.
class KeyText {
public:
    explicit KeyText(void const* key)
        : chars(textOf(key)), cut(isTooLong(key) ? ZorString::create(chars, -1) : nullptr) {}
    char const* get() const { return cut ? cut.text() : chars; }

private:
    static bool isTooLong(void const* key) {
        return !zor_isString(key) &&
               strnlen(textOf(key), ZorString::maxLength + 1) > ZorString::maxLength;
    }

    char const* chars;
    StringRef cut;
};

} // namespace

void zor_internal::moveToEnd(ZorMapEntry** map, ZorString const* key) {
    unsigned const hash = fnv0_32_str(key->text);
    ZorMapEntry** link = &map[hash % kBucketCount];
    while (std::strcmp((*link)->key->text, key->text) != 0) link = &(*link)->next;
    ZorMapEntry* const entry = *link;
    *link = entry->next;
    entry->next = nullptr;
    while (*link) link = &(*link)->next;
    *link = entry;
    if (MapIndex* const index = MapIndex::of(map)) index->noteLast(hash, entry);
}

ZorMapEntry** zor_mapMake() { return new ZorMapEntry*[kBucketCount + 1](); } // and the index

void zor_mapSet(ZorMapEntry** map, void const* key, void* value) {
    KeyText const text(key);
    unsigned const hash = fnv0_32_str(text.get());
    Found const found = find(map, hash, text.get());
    if (found.entry) {
        found.entry->value = value;
        return;
    }
    StringRef reference(stringOf(key));
    *found.end = new ZorMapEntry{reference.get(), value, nullptr};
    (void)reference.release();
    MapIndex* const index = MapIndex::of(map);
    if (index && !index->add(hash, *found.end)) MapIndex::drop(map);
}

void* zor_mapGet(ZorMapEntry** map, void const* key) {
    KeyText const text(key);
    ZorMapEntry const* const entry = find(map, fnv0_32_str(text.get()), text.get()).entry;
    return entry ? entry->value : nullptr;
}

void zor_mapRemove(ZorMapEntry** map, void const* key) {
    KeyText const text(key);
    unsigned const hash = fnv0_32_str(text.get());
    ZorMapEntry* const entry = find(map, hash, text.get()).entry;
    if (!entry) return;
    ZorMapEntry* before = nullptr;
    ZorMapEntry** link = &map[hash % kBucketCount];
    for (; *link != entry; link = &before->next) before = *link;
    if (MapIndex* const index = MapIndex::of(map)) {
        index->remove(hash, entry, before);
        if (index->isSparse()) MapIndex::drop(map);
    }
    *link = entry->next;
    freeEntry(entry);
}

ZorListNode* zor_mapValues(ZorMapEntry** map) {
    ListBuilder values;
    forEachEntry(map, [&values](ZorMapEntry const& entry) { values.append(entry.value); });
    return values.release();
}

void zor_mapDelete(ZorMapEntry** map) {
    clearMap(map, [](void*) {});
    delete[] map;
}

unsigned int fnv0_32_str(char const* text) {
    unsigned int hash = 0;
    for (; *text; ++text) hash = (hash * kFnvPrime) ^ static_cast<unsigned char>(*text);
    return hash;
}

unsigned char firstCharacterHash(char const* text) {
    return text ? static_cast<unsigned char>(*text) : 0;
}
