// Making a document of the schema, its values being the defaults, and deleting it again: both are
// measured. An item is a cell.

#include "bench/workload.h"
#include "bench/zor_phone.h"

namespace bench {
namespace {

void makeByZor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ZorCollection store(PhoneData::kRoot);
    store.importXML(phone.definition().c_str());
    for (auto _ : state) {
        keep(store.makeDocument(PhoneData::kSchema, "made"));
        store.deleteDocument("made");
    }
    ZorDocument* const document = store.makeDocument(PhoneData::kSchema, "made");
    std::unique_ptr<ZorResultSet> const label(document->select("line[2]/key[2]/label"));
    std::string text;
    label->getValue(text);
    if (document->rootNode->countRequiredValueNodes() != phone.values() ||
        text != phone.node("/line/key/label").defaultText) {
        fail(state, "another document");
    }
    countItems(state, phone.values());
}

[[maybe_unused]] auto* const added = addWorkload("MakeDocument", "zor", makeByZor, phoneSizes());

} // namespace
} // namespace bench
