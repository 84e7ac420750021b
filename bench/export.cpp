// Export of a document all of whose values are changed, as one text.

#include <string>

#include "bench/workload.h"
#include "bench/zor_phone.h"

namespace bench {
namespace {

void exportByZor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ZorPhone zor(phone);
    std::string text;
    for (auto _ : state) text = zor.store().exportDocument(PhoneData::kDocument);
    if (text != phone.document()) fail(state, "another text");
    countItems(state, phone.values());
}

[[maybe_unused]] auto* const added = addWorkload("Export", "zor", exportByZor, phoneSizes());

} // namespace
} // namespace bench
