// Reading one value, by its node and occurrence: a number, and a text as a new reference that is
// given back. Every occurrence in turn, in an order that no cache foresees.

#include "bench/accesses.h"
#include "bench/number_reads.h"
#include "bench/workload.h"
#include "bench/zor_phone.h"

namespace bench {
namespace {

void readNumberByZor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ZorPhone zor(phone);
    ZorDocument& document = zor.document();
    ZorSchemaNode* const node = zor.node(kNumberPath);
    measureNumberReads(state, phone,
                       [&](int i) { return document.getIntNodeValue(node, i, nullptr); });
}

void readTextByZor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ZorPhone zor(phone);
    ZorDocument& document = zor.document();
    ZorSchemaNode* const node = zor.node(kTextPath);
    std::vector<int> const order = shuffled(node->getTotalOccurrences());
    long sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (int const i : order) {
            ZorString* const text = document.getStringNodeValue(node, i);
            sum += zor_stringLength(text);
            text->removeRef();
        }
        keep(sum);
    }
    if (sum != sumOfLengths(valuesOf(phone, phone.node(kTextPath)), order)) {
        fail(state, "other texts");
    }
    countItems(state, static_cast<long>(order.size()));
}

[[maybe_unused]] auto* const number =
    addWorkload("ReadNumber", "zor", readNumberByZor, phoneSizes());
[[maybe_unused]] auto* const text = addWorkload("ReadText", "zor", readTextByZor, phoneSizes());

} // namespace
} // namespace bench
