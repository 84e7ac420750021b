// The floor of contention: threads that read an array between take and give of a semaphore, all of
// the same one, and each of its own.

#include <deque>
#include <memory>

#include "bench/floor_store.h"
#include "bench/number_reads.h"
#include "bench/workload.h"

namespace bench {
namespace {

constexpr int kSize = 1000;

std::unique_ptr<FloorNode> tree;
std::deque<FloorDocument> documents;

void readBy(benchmark::State& state, FloorDocument& document) {
    FloorNode const& node = floorNode(*tree, kNumberPath);
    FloorCell const* const cells = document.cellsOf(node);
    measureNumberReads(state, phoneData(kSize),
                       [&](int i) { return readNumber(document, cells, i); });
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
    byThreads(added, makeDocuments, deleteDocuments);
}

[[maybe_unused]] auto* const one =
    addWorkload("ReadShared", "floor", readOneByFloor, {kSize}) -> Apply(withThreads);
[[maybe_unused]] auto* const own =
    addWorkload("ReadOwn", "floor", readOwnByFloor, {kSize}) -> Apply(withThreads);

} // namespace
} // namespace bench
