#include "document/result_records.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace zor_internal {
namespace {

// Records that come one by one get blocks that grow with the set: most sets have one. Of many,
// whose number is known, a block has no more than is found in a heap in pieces.
constexpr unsigned kLargestBlock = 64;
constexpr std::size_t kLargestOfMany = 1024;

// A place in a block. Those behind the last record of a block are not made yet.
struct Entry : ZorResultPointer {
    Entry(Result const& result, unsigned at, unsigned count)
        : ZorResultPointer(result.node, result.occurrence, result.flat),
          place{static_cast<ZorResultPointer*>(this), nullptr, nullptr}, index(at), size(count) {}

    ZorListNode place;
    unsigned index; // in its block
    unsigned size;  // of its block
};

Entry* entryAt(ZorListNode const* place) {
    return static_cast<Entry*>(static_cast<ZorResultPointer*>(place->value));
}

// Makes an entry behind `last`, or the first of a new block of `size`.
Entry* makeBehind(Entry* last, Result const& result, unsigned size) {
    unsigned const index = last ? last->index + 1 : 0;
    if (last && index < last->size) return new (last + 1) Entry(result, index, last->size);
    return new (::operator new(size * sizeof(Entry))) Entry(result, 0, size);
}

void append(ZorResultSet* set, Result const& result, unsigned size) {
    ZorListNode* const last = set->tail;
    ZorListNode* const place = &makeBehind(last ? entryAt(last) : nullptr, result, size)->place;
    place->prev = last;
    (last ? last->next : set->head) = place;
    set->tail = place;
    ++set->count;
}

} // namespace

void appendRecord(ZorResultSet* set, Result const& result) {
    append(set, result, set->tail ? std::min(entryAt(set->tail)->size * 2, kLargestBlock) : 1);
}

void fillArray(ZorResultSet* set, Result const* results, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        append(set, results[i], static_cast<unsigned>(std::min(count - i, kLargestOfMany)));
    }
    set->finalize();
}

ZorListNode* placeOf(ZorResultPointer* record) { return &static_cast<Entry*>(record)->place; }

void destroyRecords(ZorListNode* last) {
    while (last) {
        Entry* const entry = entryAt(last);
        last = last->prev;
        bool const isFirst = entry->index == 0;
        entry->~Entry();
        if (isFirst) ::operator delete(entry);
    }
}

} // namespace zor_internal
