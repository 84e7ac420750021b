#include "foundation/map_index.h"

#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "foundation/map_entries.h"
#include "zor/string.h"

namespace zor_internal {
namespace {

constexpr unsigned kFirstSlots = 1024;

// Behind the heads, where zor_mapMake has left room for it; like them, a pointer to an entry.
ZorMapEntry*& roomBehind(ZorMapEntry** map) { return map[kBucketCount]; }

} // namespace

MapIndex* MapIndex::of(ZorMapEntry** map) { return reinterpret_cast<MapIndex*>(roomBehind(map)); }

MapIndex* MapIndex::make(ZorMapEntry** map) {
    auto* const made = new (std::nothrow) MapIndex(map);
    roomBehind(map) = reinterpret_cast<ZorMapEntry*>(made);
    // All slots at once: where memory lacks, that is known before the entries are looked at.
    unsigned count = 0;
    forEachEntry(map, [&count](ZorMapEntry&) { ++count; });
    unsigned slots = kFirstSlots;
    while (slots < count * 2) slots *= 2;
    if (!made || !made->lasts || !made->resize(slots)) {
        drop(map);
        return nullptr;
    }
    forEachEntry(map,
                 [made](ZorMapEntry& entry) { made->add(fnv0_32_str(entry.key->text), &entry); });
    return made;
}

void MapIndex::drop(ZorMapEntry** map) {
    delete of(map);
    roomBehind(map) = nullptr;
}

MapIndex::MapIndex(ZorMapEntry** indexed)
    : map(indexed), lasts(new (std::nothrow) ZorMapEntry*[kBucketCount]()), slots(nullptr),
      slotCount(0), used(0) {}

MapIndex::~MapIndex() {
    delete[] lasts;
    delete[] slots;
}

// The low bits chose the chain; the others are as good.
unsigned MapIndex::slotOf(unsigned hash) const { return (hash ^ hash >> 16) & (slotCount - 1); }

ZorMapEntry* MapIndex::find(unsigned hash, char const* key) const {
    unsigned at = slotOf(hash);
    for (; slots[at].entry; at = next(at)) {
        if (slots[at].hash == hash && std::strcmp(slots[at].entry->key->text, key) == 0) break;
    }
    return slots[at].entry;
}

ZorMapEntry** MapIndex::endOf(unsigned hash) const {
    ZorMapEntry* const last = lasts[hash % kBucketCount];
    return last ? &last->next : &map[hash % kBucketCount];
}

bool MapIndex::add(unsigned hash, ZorMapEntry* entry) {
    if (used * 2 >= slotCount && !resize(slotCount * 2)) return false;
    place({hash, entry});
    ++used;
    noteLast(hash, entry);
    return true;
}

void MapIndex::noteLast(unsigned hash, ZorMapEntry* entry) { lasts[hash % kBucketCount] = entry; }

void MapIndex::remove(unsigned hash, ZorMapEntry const* entry, ZorMapEntry* before) {
    if (lasts[hash % kBucketCount] == entry) noteLast(hash, before);
    unsigned hole = slotOf(hash);
    while (slots[hole].entry != entry) hole = next(hole);
    // Of those up to the next free slot, each that a search would look for in the hole, or before
    // it, moves there and leaves the next one.
    for (unsigned at = next(hole); slots[at].entry; at = next(at)) {
        if (distance(slotOf(slots[at].hash), at) < distance(hole, at)) continue;
        slots[hole] = slots[at];
        hole = at;
    }
    slots[hole].entry = nullptr;
    --used;
}

void MapIndex::place(Slot const& slot) {
    unsigned at = slotOf(slot.hash);
    while (slots[at].entry) at = next(at);
    slots[at] = slot;
}

bool MapIndex::resize(unsigned wanted) {
    auto* const larger = new (std::nothrow) Slot[wanted]();
    if (!larger) return false;
    std::unique_ptr<Slot[]> const old(std::exchange(slots, larger));
    unsigned const oldCount = std::exchange(slotCount, wanted);
    for (unsigned i = 0; i < oldCount; ++i) {
        if (old[i].entry) place(old[i]);
    }
    return true;
}

} // namespace zor_internal
