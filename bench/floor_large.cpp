// The floors of one large document of numbers: its cells made, filled and released; read one by one
// between take and give of a semaphore.

#include <memory>

#include "bench/accesses.h"
#include "bench/floor_store.h"
#include "bench/workload.h"

namespace bench {
namespace {

constexpr long kDefault = 7;

std::unique_ptr<FloorCell[]> makeCells(int count) {
    std::unique_ptr<FloorCell[]> cells(new FloorCell[static_cast<std::size_t>(count)]);
    for (int i = 0; i < count; ++i) {
        cells[static_cast<std::size_t>(i)].number = kDefault;
        cells[static_cast<std::size_t>(i)].flags = 0;
    }
    return cells;
}

void makeByFloor(benchmark::State& state) {
    long last = 0;
    for (auto _ : state) {
        std::unique_ptr<FloorCell[]> const cells = makeCells(sizeOf(state));
        keep(cells[0]);
        last = cells[static_cast<std::size_t>(sizeOf(state) - 1)].number;
    }
    if (last != kDefault) fail(state, "other cells");
    countItems(state, sizeOf(state));
}

[[gnu::noinline]] long readNumber(sem_t& lock, FloorCell const* cells, long at) {
    FloorLock const held(lock);
    return cells[at].number;
}

// In the order of the other side: the occurrences of ten blocks of cells in turn.
void readByFloor(benchmark::State& state) {
    constexpr int kBlocks = 10;
    std::unique_ptr<FloorCell[]> const cells = makeCells(sizeOf(state));
    int const length = sizeOf(state) / kBlocks;
    std::vector<int> const order = shuffled(length);
    sem_t lock;
    sem_init(&lock, 0, 1);
    long sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (int const i : order) {
            for (int block = 0; block < kBlocks; ++block) {
                sum += readNumber(lock, cells.get() + static_cast<long>(block) * length, i);
            }
        }
        keep(sum);
    }
    auto const reads = static_cast<long>(order.size()) * kBlocks;
    if (sum != kDefault * reads) fail(state, "other numbers");
    countItems(state, reads);
}

std::vector<int> const sizes = {1000, 100000, 1000000};

[[maybe_unused]] auto* const make = addWorkload("LargeMake", "floor", makeByFloor, sizes);
[[maybe_unused]] auto* const read = addWorkload("LargeRead", "floor", readByFloor, sizes);

} // namespace
} // namespace bench
