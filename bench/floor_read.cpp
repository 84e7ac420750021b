// The floor of reading: an array that is read between take and give of an uncontended semaphore; a
// text is also copied, to a buffer of the caller's.

#include <cstring>

#include "bench/accesses.h"
#include "bench/floor_store.h"
#include "bench/number_reads.h"
#include "bench/workload.h"

namespace bench {
namespace {

// The length. Out of line, as an operation of a library is.
[[gnu::noinline]] int readText(FloorDocument& document, FloorCell const* cells, int occurrence,
                               char* buffer) {
    FloorLock const held(document.lock);
    FloorText const* const text = cells[occurrence].text;
    std::memcpy(buffer, text->characters(), text->length + 1U);
    return text->length;
}

void readNumberByFloor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    std::unique_ptr<FloorNode> const tree = floorTree(phone.schema());
    FloorDocument document(*tree, phone);
    FloorNode const& node = floorNode(*tree, kNumberPath);
    FloorCell const* const cells = document.cellsOf(node);
    measureNumberReads(state, phone, [&](int i) { return readNumber(document, cells, i); });
}

void readTextByFloor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    std::unique_ptr<FloorNode> const tree = floorTree(phone.schema());
    FloorDocument document(*tree, phone);
    FloorNode const& node = floorNode(*tree, kTextPath);
    FloorCell const* const cells = document.cellsOf(node);
    std::vector<int> const order = shuffled(node.total);
    char buffer[64];
    long sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (int const i : order) {
            sum += readText(document, cells, i, buffer);
            keep(buffer);
        }
    }
    if (sum != sumOfLengths(valuesOf(phone, *node.phone), order)) fail(state, "other texts");
    countItems(state, static_cast<long>(order.size()));
}

[[maybe_unused]] auto* const number =
    addWorkload("ReadNumber", "floor", readNumberByFloor, phoneSizes());
[[maybe_unused]] auto* const text = addWorkload("ReadText", "floor", readTextByFloor, phoneSizes());

} // namespace
} // namespace bench
