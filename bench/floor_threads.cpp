// The floor of contention: threads that read an array between take and give of a semaphore, all of
// the same one, and each of its own.

#include <deque>
#include <memory>

#include "bench/accesses.h"
#include "bench/floor_store.h"
#include "bench/workload.h"

namespace bench {
namespace {

constexpr int kSize = 1000;

std::unique_ptr<FloorNode> tree;
std::deque<FloorDocument> documents;

[[gnu::noinline]] long readNumber(FloorDocument& document, FloorCell const* cells, int occurrence) {
    FloorLock const held(document.lock);
    return cells[occurrence].number;
}

void readBy(benchmark::State& state, FloorDocument& document) {
    FloorNode const& node = floorNode(*tree, kNumberPath);
    FloorCell const* const cells = document.cellsOf(node);
    std::vector<int> const order = shuffled(node.total);
    long sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (int const i : order) sum += readNumber(document, cells, i);
        keep(sum);
    }
    if (sum != sumOfNumbers(valuesOf(phoneData(kSize), *node.phone), order)) {
        fail(state, "other numbers");
    }
    countItems(state, static_cast<long>(order.size()));
}

void readOneByFloor(benchmark::State& state) { readBy(state, documents.front()); }

void readOwnByFloor(benchmark::State& state) {
    readBy(state, documents[static_cast<std::size_t>(state.thread_index())]);
}

void makeDocuments(benchmark::State const& state) {
    PhoneData const& phone = phoneData(kSize);
    tree = floorTree(phone.schema());
    for (int i = 0; i < state.threads(); ++i) documents.emplace_back(*tree, phone);
}

void deleteDocuments(benchmark::State const&) { documents.clear(); }

void withThreads(benchmark::internal::Benchmark* added) {
    added->Setup(makeDocuments)->Teardown(deleteDocuments)->UseRealTime();
    for (int const threads : {1, 2, 4}) added->Threads(threads);
}

[[maybe_unused]] auto* const one =
    addWorkload("ReadShared", "floor", readOneByFloor, {kSize}) -> Apply(withThreads);
[[maybe_unused]] auto* const own =
    addWorkload("ReadOwn", "floor", readOwnByFloor, {kSize}) -> Apply(withThreads);

} // namespace
} // namespace bench
