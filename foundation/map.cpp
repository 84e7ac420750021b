// Maps: 256 chained buckets, in insertion order within a bucket.
//
// `findLink` yields the link that points at the entry of a key, or the empty link at the end of
// its chain: reading through it gets, writing to it inserts, and replacing it removes.

#include "zor/containers.h"

#include <cstring>

#include "foundation/list_builder.h"
#include "foundation/map_entries.h"
#include "foundation/string_ref.h"
#include "foundation/text_argument.h"
#include "zor/string.h"

using zor_internal::forEachEntry;
using zor_internal::freeEntry;
using zor_internal::kBucketCount;
using zor_internal::ListBuilder;
using zor_internal::stringOf;
using zor_internal::StringRef;
using zor_internal::textOf;

namespace {

constexpr unsigned kFnvPrime = 0x01000193;

ZorMapEntry** findLink(ZorMapEntry** map, char const* key) {
    ZorMapEntry** link = &map[fnv0_32_str(key) & (kBucketCount - 1)];
    while (*link && std::strcmp((*link)->key->text, key) != 0) link = &(*link)->next;
    return link;
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
    ZorMapEntry** link = findLink(map, key->text);
    ZorMapEntry* const entry = *link;
    *link = entry->next;
    entry->next = nullptr;
    while (*link) link = &(*link)->next;
    *link = entry;
}

ZorMapEntry** zor_mapMake() { return new ZorMapEntry*[kBucketCount](); }

void zor_mapSet(ZorMapEntry** map, void const* key, void* value) {
    ZorMapEntry** const link = findLink(map, KeyText(key).get());
    if (*link) {
        (*link)->value = value;
        return;
    }
    StringRef reference(stringOf(key));
    *link = new ZorMapEntry{reference.get(), value, nullptr};
    (void)reference.release();
}

void* zor_mapGet(ZorMapEntry** map, void const* key) {
    ZorMapEntry const* const entry = *findLink(map, KeyText(key).get());
    return entry ? entry->value : nullptr;
}

void zor_mapRemove(ZorMapEntry** map, void const* key) {
    ZorMapEntry** const link = findLink(map, KeyText(key).get());
    ZorMapEntry* const entry = *link;
    if (!entry) return;
    *link = entry->next;
    freeEntry(entry);
}

ZorListNode* zor_mapValues(ZorMapEntry** map) {
    ListBuilder values;
    forEachEntry(map, [&values](ZorMapEntry const& entry) { values.append(entry.value); });
    return values.release();
}

void zor_mapDelete(ZorMapEntry** map) {
    for (unsigned i = 0; i < kBucketCount; ++i) {
        while (ZorMapEntry* const entry = map[i]) {
            map[i] = entry->next;
            freeEntry(entry);
        }
    }
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
