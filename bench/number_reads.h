// Reading numbers, as all who are measured at it do: every occurrence in turn, in an order that no
// cache foresees, by one thread or by several.

#pragma once

#include <vector>

#include "bench/accesses.h"
#include "bench/workload.h"

namespace bench {

// Measures `read(occurrence)` of the node at kNumberPath.
template <typename Read>
void measureNumberReads(benchmark::State& state, PhoneData const& phone, Read read) {
    PhoneNode const& node = phone.node(kNumberPath);
    std::vector<int> const order = shuffled(node.total);
    long sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (int const i : order) sum += read(i);
        keep(sum);
    }
    if (sum != sumOfNumbers(valuesOf(phone, node), order)) fail(state, "other numbers");
    countItems(state, static_cast<long>(order.size()));
}

// By 1, 2 and 4 threads, for which `make` and `release` prepare, by the clock on the wall.
inline void byThreads(benchmark::internal::Benchmark* added, void (*make)(benchmark::State const&),
                      void (*release)(benchmark::State const&)) {
    added->Setup(make)->Teardown(release)->UseRealTime();
    for (int const threads : {1, 2, 4}) added->Threads(threads);
}

} // namespace bench
