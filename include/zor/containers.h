// Lists and hash maps of untyped values.
//
// Neither owns its values: they are never freed here. A list is a pointer to its first node, the
// empty list is null. A map is an array of 256 bucket heads; its keys are ZorStrings, of which it
// holds one reference each, or plain texts, of which it makes strings. Keys are compared up to the
// NUL, case and all; of a plain text only the first 65534 characters count.
//
//     ZorMapEntry** map = zor_mapMake();
//     zor_mapSet(map, "volume", &volume);
//     int* found = static_cast<int*>(zor_mapGet(map, "volume"));
//     ZorListNode* values = zor_mapValues(map);
//     for (ZorListNode* n = values; n; n = zor_listNextNode(n)) use(zor_listGetValue(n));
//     zor_listDelete(values);
//     zor_mapDelete(map);
//
// Threads: nothing locks here; the owner of a list or map does. Of a map, also to look something
// up: a large one learns from that, in memory of its own behind the heads. So a map is made by
// `zor_mapMake`, and its chains are for reading: entries come and go by the functions below.

#pragma once

#include "zor/export.h"

class ZorString;

struct ZorListNode {
    void* value;
    ZorListNode* next; // null at the end
    ZorListNode* prev; // null at the start
};

struct ZorMapEntry {
    ZorString* key; // one reference
    void* value;
    ZorMapEntry* next; // the next entry of the bucket, in insertion order
};

// A list of one node. New reference: the caller frees it with `zor_listDelete`.
ZOR_API ZorListNode* zor_listMake(void* value);

// Appends a node behind the last one that `list` leads to. Returns the new node. Borrowed: it
// belongs to the list.
// REQUIRES: `list` is not null.
ZOR_API ZorListNode* zor_listAddNode(ZorListNode* list, void* value);

// The first node from `list` on for which `cmp(value, key)` is 0, or whose value is the pointer
// `key` when `cmp` is null; null when there is none. Borrowed.
ZOR_API ZorListNode* zor_listFindNode(ZorListNode* list, void const* key,
                                      int (*cmp)(void const* value, void const* key));

// The following and the preceding node, null at the ends. Borrowed.
// REQUIRES: `node` is not null.
ZOR_API ZorListNode* zor_listNextNode(ZorListNode const* node);
ZOR_API ZorListNode* zor_listPrevNode(ZorListNode const* node);

// The value of a node. Borrowed: the list never owns its values.
// REQUIRES: `node` is not null.
ZOR_API void* zor_listGetValue(ZorListNode const* node);
ZOR_API void zor_listSetValue(ZorListNode* node, void* value);

// Puts the list `b` behind the last node of `a`. When `b` is the middle of a list, that list ends
// before it from then on. A null `b` does nothing.
// REQUIRES: `a` is not null and not a part of `b`.
ZOR_API void zor_listJoin(ZorListNode* a, ZorListNode* b);

// Frees `node` and all nodes behind it; a list of which it was the middle ends before it. The
// values are not freed. Null does nothing.
ZOR_API void zor_listDelete(ZorListNode* node);

// An empty map. New reference: the caller frees it with `zor_mapDelete`.
ZOR_API ZorMapEntry** zor_mapMake();

// Stores `value` under `key` (a ZorString or plain text; null counts as the empty text). A value
// that the key had before is replaced, not freed. The map adds a reference to a ZorString key that
// is new to it.
// REQUIRES: `map` is not null.
ZOR_API void zor_mapSet(ZorMapEntry** map, void const* key, void* value);

// The value stored under `key`, or null when there is none. A stored null looks the same as
// absence. Borrowed: the map never owns its values.
// REQUIRES: `map` is not null.
ZOR_API void* zor_mapGet(ZorMapEntry** map, void const* key);

// Removes the entry of `key`, if there is one. The value is not freed.
// REQUIRES: `map` is not null.
ZOR_API void zor_mapRemove(ZorMapEntry** map, void const* key);

// All values, in the order of the buckets 0 to 255 and of insertion within a bucket; null for an
// empty map. New reference: the caller frees the list with `zor_listDelete`.
// REQUIRES: `map` is not null.
ZOR_API ZorListNode* zor_mapValues(ZorMapEntry** map);

// Frees the map and its key references. The values are not freed.
// REQUIRES: `map` is not null.
ZOR_API void zor_mapDelete(ZorMapEntry** map);

// The 32-bit FNV-0 hash of the text: offset basis 0, multiply before XOR. The empty text gives 0.
// REQUIRES: `text` is not null.
ZOR_API unsigned int fnv0_32_str(char const* text);

// The first byte of the text, 0 for null.
ZOR_API unsigned char firstCharacterHash(char const* text);
