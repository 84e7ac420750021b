// Import of a whole document into an existing schema, every value validated. Each iteration makes a
// fresh document; to destroy it is not measured.

#include "bench/phone_data.h"
#include "bench/stopwatch.h"
#include "bench/workload.h"
#include "zor/collection.h"

namespace bench {
namespace {

void importByZor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ZorCollection store(PhoneData::kRoot);
    store.importXML(phone.definition().c_str());
    for (auto _ : state) {
        store.deleteDocument(PhoneData::kDocument);
        Stopwatch const watch(state);
        store.importXML(phone.document().c_str());
    }
    if (store.exportDocument(PhoneData::kDocument) != phone.document()) fail(state, "other values");
    countItems(state, phone.values());
}

[[maybe_unused]] auto* const added =
    addWorkload("Import", "zor", importByZor, phoneSizes()) -> UseManualTime();

} // namespace
} // namespace bench
