// The floor of finding many occurrences by "//": the evaluator by hand.

#include <memory>

#include "bench/floor_evaluator.h"
#include "bench/shapes.h"
#include "bench/workload.h"

namespace bench {
namespace {

void searchByFloor(benchmark::State& state, char const* path) {
    PhoneData const data(repeatedSchema(sizeOf(state)));
    std::unique_ptr<FloorNode> const tree = floorTree(data.schema());
    FloorDocument document(*tree, data);
    for (auto _ : state) keep(floorSelect(document, path));
    std::unique_ptr<FloorResults> const found = floorSelect(document, path);
    bool good = found->size() == static_cast<std::size_t>(sizeOf(state));
    for (int i = 0; good && i < sizeOf(state); ++i) {
        good = (*found)[static_cast<std::size_t>(i)].flat == i;
    }
    if (!good) fail(state, "other results");
    countItems(state, sizeOf(state));
}

void searchBranchByFloor(benchmark::State& state) { searchByFloor(state, "//entry"); }
void searchItemByFloor(benchmark::State& state) { searchByFloor(state, "//name"); }

std::vector<int> const sizes = {1000, 10000};

[[maybe_unused]] auto* const branch =
    addWorkload("RepeatedBranch", "floor", searchBranchByFloor, sizes);
[[maybe_unused]] auto* const item = addWorkload("RepeatedItem", "floor", searchItemByFloor, sizes);

} // namespace
} // namespace bench
