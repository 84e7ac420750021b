#include "document/result_records.h"

#include <algorithm>
#include <memory>
#include <new>

namespace zor_internal {
namespace {

// Records that come one by one get blocks that grow with the set: most sets have one.
constexpr unsigned kLargestBlock = 64;

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

void* makeBlock(std::size_t size) { return ::operator new(size * sizeof(Entry)); }

Entry* makeBehind(Entry* last, Result const& result) {
    unsigned const index = last ? last->index + 1 : 0;
    if (last && index < last->size) return new (last + 1) Entry(result, index, last->size);
    unsigned const size = last ? std::min(last->size * 2, kLargestBlock) : 1;
    return new (makeBlock(size)) Entry(result, 0, size);
}

void link(ZorListNode* last, ZorListNode* place) {
    place->prev = last;
    last->next = place;
}

} // namespace

void appendRecord(ZorResultSet* set, Result const& result) {
    ZorListNode* const place = &makeBehind(set->tail ? entryAt(set->tail) : nullptr, result)->place;
    if (set->tail)
        link(set->tail, place);
    else
        set->head = place;
    set->tail = place;
    ++set->count;
}

void fillArray(ZorResultSet* set, Result const* results, std::size_t count) {
    if (count == 0) return;
    std::unique_ptr<ZorResultPointer*[]> array(count > 1 ? new ZorResultPointer*[count] : nullptr);
    auto* const block = static_cast<Entry*>(makeBlock(count));
    set->results = array ? array.release() : &set->single;
    set->count = static_cast<unsigned>(count);
    for (unsigned i = 0; i < set->count; ++i) {
        set->results[i] = new (block + i) Entry(results[i], i, set->count);
        if (i > 0) link(&block[i - 1].place, &block[i].place);
    }
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
