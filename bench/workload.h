// How a benchmark is registered, and how it says that a result was wrong.
//
// A workload is one operation, measured for several implementations: zor, the floor (the least work
// that anybody must do for it), and peers. A benchmark is called WORKLOAD/WHO/SIZE, as
// Import/zor/1000; a report joins by that name. WHO is one of "zor", "floor", "libyang",
// "pugixml", "libxml2", "glib", "libconfig", "sqlite" and "hashmap"; SIZE is the number of values
// of the phone data, or of what the workload says. Items processed are values (or results, or
// nodes), so that the time of one comes out:
//
//     void importByZor(benchmark::State& state) {
//         PhoneData const& phone = phoneData(sizeOf(state));
//         ... // set-up
//         for (auto _ : state) { ... }
//         if (store.exportDocument("phone1") != phone.document()) fail(state, "other values");
//         countItems(state, phone.values());
//     }
//     [[maybe_unused]] auto* const added =
//         addWorkload("Import", "zor", importByZor, phoneSizes());
//
// What takes memory is a workload, too: its time means nothing, and its counter "bytes" is the
// number of heap bytes per value.
//
// A file is called like its workload, floor_WORKLOAD.cpp has its floor, and peer_WHO.cpp all
// that a peer does. Each result is checked behind the timed loop, or outside what is timed.

#pragma once

#include <benchmark/benchmark.h>

#include <vector>

namespace bench {

using Body = void (*)(benchmark::State& state);

// The numbers of values that are measured.
std::vector<int> phoneSizes();

// Registers WORKLOAD/WHO for those sizes. Borrowed: for further settings, such as UseManualTime.
benchmark::internal::Benchmark* addWorkload(char const* workload, char const* who, Body body,
                                            std::vector<int> const& sizes);

// The number that stands at the end of the name.
int sizeOf(benchmark::State const& state);

// So many items were processed in each iteration.
void countItems(benchmark::State& state, long perIteration);

// So many bytes of the heap were taken for so many values.
void countBytes(benchmark::State& state, long bytes, long values);

// Makes the compiler believe that the value is looked at. Never by DoNotOptimize with a variable
// that may change: after g++ 12 with little optimisation it holds another value.
template <typename Value>
void keep(Value const& value) {
    benchmark::DoNotOptimize(value);
}

// Ends the benchmark with an error; the program will end with one, too.
void fail(benchmark::State& state, char const* why);
// Whether any benchmark has failed.
bool anyFailed();

} // namespace bench
