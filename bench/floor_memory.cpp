// The floor of memory: the cells, and each text in a block of its own.

#include <cstring>
#include <memory>

#include "bench/floor_store.h"
#include "bench/heap_meter.h"
#include "bench/workload.h"

namespace bench {
namespace {

void memoryByFloor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    std::vector<std::unique_ptr<char[]>> texts;
    long bytes = 0;
    for (auto _ : state) {
        texts.clear();
        texts.reserve(phone.flat().size());
        HeapMeter const meter;
        std::unique_ptr<FloorCell[]> const cells(new FloorCell[phone.flat().size()]);
        keep(cells.get());
        for (PhoneValue const& value : phone.flat()) {
            if (heldAs(*value.node->type) != Held::text) continue;
            texts.emplace_back(new char[value.text.size() + 1]);
            std::memcpy(texts.back().get(), value.text.c_str(), value.text.size() + 1);
        }
        bytes = meter.bytes();
    }
    if (bytes < static_cast<long>(sizeof(FloorCell)) * phone.values()) fail(state, "too little");
    countBytes(state, bytes, phone.values());
}

[[maybe_unused]] auto* const added =
    addWorkload("Memory", "floor", memoryByFloor, phoneSizes()) -> Iterations(1);

} // namespace
} // namespace bench
