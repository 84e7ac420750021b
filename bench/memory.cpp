// The heap that a document with all its values takes, beside that of its schema. The counter
// "bytes" is what a value takes, and NumberMemory what one more number does: exactly a cell.

#include "bench/heap_meter.h"
#include "bench/workload.h"
#include "bench/zor_phone.h"

namespace bench {
namespace {

void memoryByZor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ZorCollection store(PhoneData::kRoot);
    store.importXML(phone.definition().c_str());
    store.importXML(phone.document().c_str()); // makes what an import keeps, such as its buffers
    store.deleteDocument(PhoneData::kDocument);
    long bytes = 0;
    for (auto _ : state) {
        store.deleteDocument(PhoneData::kDocument);
        HeapMeter const meter;
        store.importXML(phone.document().c_str());
        bytes = meter.bytes();
    }
    if (store.exportDocument(PhoneData::kDocument) != phone.document()) fail(state, "other values");
    countBytes(state, bytes, phone.values());
}

// What a document of so many ints asks for.
long bytesOfNumbers(int count) {
    ZorCollection store("store");
    ZorSchema* const schema = store.makeSchema("schema");
    schema->makeDataNode(schema->rootNode, "number", static_cast<short>(count),
                         schema->getDataType("int"), "7");
    HeapMeter const meter;
    store.makeDocument("schema", "document");
    return meter.asked();
}

void numberMemoryByZor(benchmark::State& state) {
    int const count = sizeOf(state);
    long bytes = 0;
    for (auto _ : state) bytes = bytesOfNumbers(2 * count) - bytesOfNumbers(count);
    if (bytes != count * static_cast<long>(sizeof(ZorValueNode))) fail(state, "not only cells");
    countBytes(state, bytes, count);
}

[[maybe_unused]] auto* const all =
    addWorkload("Memory", "zor", memoryByZor, phoneSizes()) -> Iterations(1);
[[maybe_unused]] auto* const numbers =
    addWorkload("NumberMemory", "zor", numberMemoryByZor, {1000}) -> Iterations(1);

} // namespace
} // namespace bench
