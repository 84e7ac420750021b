#include "document/result_records.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace zor_internal {
namespace {

constexpr unsigned kLargestBlock = 64;

// A place in a block. Those behind the last record of a block are not made yet.
struct Entry : ZorResultPointer {
    Entry(ZorResultPointer const& record, unsigned at, unsigned count)
        : ZorResultPointer(record), place{static_cast<ZorResultPointer*>(this), nullptr, nullptr},
          index(static_cast<unsigned short>(at)), size(static_cast<unsigned short>(count)) {}

    ZorListNode place;
    unsigned short index; // in its block
    unsigned short size;  // of its block
};

Entry* entryAt(ZorListNode const* place) {
    return static_cast<Entry*>(static_cast<ZorResultPointer*>(place->value));
}

} // namespace

ZorListNode* makeRecord(ZorListNode* last, ZorResultPointer const& record) {
    Entry* const behind = last ? entryAt(last) : nullptr;
    if (behind && behind->index + 1U < behind->size) {
        auto* const entry = new (behind + 1) Entry(record, behind->index + 1U, behind->size);
        return &entry->place;
    }
    // Blocks grow with the set: most have one result.
    unsigned const size = behind ? std::min(behind->size * 2U, kLargestBlock) : 1;
    void* const block = ::operator new(size * sizeof(Entry));
    return &(new (block) Entry(record, 0, size))->place;
}

ZorListNode* placeOf(ZorResultPointer* record) { return &static_cast<Entry*>(record)->place; }

void destroyRecords(ZorListNode* last) {
    while (last) {
        Entry* const entry = entryAt(last);
        last = last->prev;
        std::size_t const block = entry->index == 0 ? entry->size * sizeof(Entry) : 0;
        entry->~Entry();
        if (block > 0) ::operator delete(entry, block);
    }
}

} // namespace zor_internal
