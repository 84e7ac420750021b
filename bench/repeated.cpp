// Many occurrences of one branch that "//" finds: those of the branch, and what each of them holds.
// An item is a result; the cost of one must not grow with their number.

#include <memory>
#include <string>

#include "bench/shapes.h"
#include "bench/workload.h"
#include "zor/collection.h"

namespace bench {
namespace {

void searchByZor(benchmark::State& state, char const* path) {
    ZorCollection store("store");
    buildSchema(store, *repeatedSchema(sizeOf(state)));
    ZorDocument* const document = store.makeDocument("schema", "document");
    for (auto _ : state) delete document->select(path);
    std::unique_ptr<ZorResultSet> const found(document->select(path));
    bool good = found->getResultCount() == static_cast<unsigned long>(sizeOf(state));
    for (int i = 0; good && i < sizeOf(state); ++i) good = found->results[i]->flat == i;
    if (!good) fail(state, "other results");
    countItems(state, sizeOf(state));
}

void searchBranchByZor(benchmark::State& state) { searchByZor(state, "//entry"); }
void searchItemByZor(benchmark::State& state) { searchByZor(state, "//name"); }

std::vector<int> const sizes = {1000, 10000};

[[maybe_unused]] auto* const branch =
    addWorkload("RepeatedBranch", "zor", searchBranchByZor, sizes);
[[maybe_unused]] auto* const item = addWorkload("RepeatedItem", "zor", searchItemByZor, sizes);

} // namespace
} // namespace bench
