// Times a part of an iteration, where what comes before or after it is nobody's business. For
// workloads with UseManualTime.

#pragma once

#include <benchmark/benchmark.h>

#include <chrono>

namespace bench {

// Measures from here to the end of the block, which is some 50 ns more than the work: little beside
// the 20 microseconds that the least of these iterations takes.
class Stopwatch {
public:
    explicit Stopwatch(benchmark::State& timed) : state(timed), start(Clock::now()) {}
    Stopwatch(Stopwatch const&) = delete;
    Stopwatch& operator=(Stopwatch const&) = delete;
    ~Stopwatch() {
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    }

private:
    using Clock = std::chrono::steady_clock;

    benchmark::State& state;
    Clock::time_point start;
};

} // namespace bench
