// Runs the benchmarks that --benchmark_filter chooses, and fails when none is chosen, when a result
// was wrong, or when anything was reported as an incident: everything here is meant to succeed.

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <string>

#include "bench/workload.h"
#include "zor/incident.h"

namespace {

std::atomic<bool> incidents{false};

void noteIncident(severity, std::string& message) {
    incidents = true;
    std::fprintf(stderr, "incident: %s\n", message.c_str());
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    zor_setLoggingFunction(noteIncident);
    std::size_t const run = benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return run == 0 || bench::anyFailed() || incidents ? 1 : 0;
}
