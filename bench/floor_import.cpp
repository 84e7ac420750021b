// The floor of an import: expat over the same text, with handlers that do nothing.

#include "bench/expat_pass.h"
#include "bench/phone_data.h"
#include "bench/stopwatch.h"
#include "bench/workload.h"

namespace bench {
namespace {

void importByFloor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ExpatPass expat;
    bool good = true;
    for (auto _ : state) {
        Stopwatch const watch(state);
        good &= expat.parse(phone.document());
    }
    if (!good) fail(state, expat.error());
    countItems(state, phone.values());
}

[[maybe_unused]] auto* const added =
    addWorkload("Import", "floor", importByFloor, phoneSizes()) -> UseManualTime();

} // namespace
} // namespace bench
