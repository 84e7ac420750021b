#include "bench/workload.h"

#include <atomic>
#include <string>

namespace bench {
namespace {

std::atomic<bool> failed{false};

} // namespace

std::vector<int> phoneSizes() { return {100, 1000, 10000, 100000}; }

benchmark::internal::Benchmark* addWorkload(char const* workload, char const* who, Body body,
                                            std::vector<int> const& sizes) {
    std::string const name = std::string(workload) + "/" + who;
    auto* const added = benchmark::RegisterBenchmark(name.c_str(), body);
    for (int const size : sizes) added->Arg(size);
    return added;
}

int sizeOf(benchmark::State const& state) { return static_cast<int>(state.range(0)); }

void countItems(benchmark::State& state, long perIteration) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * perIteration);
}

void countBytes(benchmark::State& state, long bytes, long values) {
    state.counters["bytes"] = static_cast<double>(bytes) / static_cast<double>(values);
}

void fail(benchmark::State& state, char const* why) {
    failed = true;
    state.SkipWithError(why);
}

bool anyFailed() { return failed; }

} // namespace bench
