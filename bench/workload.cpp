#include "bench/workload.h"

#include <atomic>
#include <cstdio>
#include <string>

namespace bench {
namespace {

std::atomic<bool> failed{false};

// Of the benchmark that runs: of several repetitions a report would not show the one that failed.
std::string running;

} // namespace

std::vector<int> phoneSizes() { return {100, 1000, 10000, 100000}; }

benchmark::internal::Benchmark* addWorkload(char const* workload, char const* who, Body body,
                                            std::vector<int> const& sizes) {
    std::string const name = std::string(workload) + "/" + who;
    auto* const added =
        benchmark::RegisterBenchmark(name.c_str(), [name, body](benchmark::State& state) {
            if (state.thread_index() == 0) running = name;
            body(state);
        });
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
    std::fprintf(stderr, "%s/%d: %s\n", running.c_str(), sizeOf(state), why);
    state.SkipWithError(why);
}

bool anyFailed() { return failed; }

} // namespace bench
