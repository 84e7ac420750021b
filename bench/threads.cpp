// Contention: threads that read numbers, all from one document, and each from its own. The time is
// that on the clock; an item is a read by any of them, so as many as there are threads in an
// iteration.

#include <atomic>
#include <deque>
#include <memory>

#include "bench/number_reads.h"
#include "bench/workload.h"
#include "bench/zor_phone.h"

namespace bench {
namespace {

constexpr int kSize = 1000;

// One store for each thread, made before any of them starts.
std::deque<ZorPhone> stores;

void readBy(benchmark::State& state, ZorPhone& zor) {
    ZorDocument& document = zor.document();
    ZorSchemaNode* const node = zor.node(kNumberPath);
    measureNumberReads(state, phoneData(kSize),
                       [&](int i) { return document.getIntNodeValue(node, i, nullptr); });
}

void readOneByZor(benchmark::State& state) { readBy(state, stores.front()); }

void readOwnByZor(benchmark::State& state) {
    readBy(state, stores[static_cast<std::size_t>(state.thread_index())]);
}

void makeStores(benchmark::State const& state) {
    for (int i = 0; i < state.threads(); ++i) stores.emplace_back(phoneData(kSize));
}

void deleteStores(benchmark::State const&) { stores.clear(); }

void withThreads(benchmark::internal::Benchmark* added) {
    byThreads(added, makeStores, deleteStores);
}

[[maybe_unused]] auto* const one =
    addWorkload("ReadShared", "zor", readOneByZor, {kSize}) -> Apply(withThreads);
[[maybe_unused]] auto* const own =
    addWorkload("ReadOwn", "zor", readOwnByZor, {kSize}) -> Apply(withThreads);

} // namespace
} // namespace bench
