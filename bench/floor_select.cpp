// The floor of select: the evaluator by hand.

#include <memory>
#include <string>

#include "bench/accesses.h"
#include "bench/floor_evaluator.h"
#include "bench/workload.h"

namespace bench {
namespace {

bool selects(FloorDocument& document, char const* path,
             std::vector<PhoneValue const*> const& values) {
    std::unique_ptr<FloorResults> const found = floorSelect(document, path);
    if (!found || found->size() != values.size()) return false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        FloorResult const& result = (*found)[i];
        if (result.node->phone != values[i]->node || result.flat != values[i]->flat) return false;
    }
    return true;
}

void selectOneByFloor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    std::unique_ptr<FloorNode> const tree = floorTree(phone.schema());
    FloorDocument document(*tree, phone);
    PhoneNode const& label = phone.node(kManyLabels);
    std::vector<std::string> const paths = pathsToLabels(label.total);
    for (auto _ : state) {
        for (std::string const& path : paths) {
            keep(floorSelect(document, path.c_str()));
        }
    }
    std::vector<PhoneValue const*> const values = valuesOf(phone, label);
    if (!selects(document, "line[1]/label", {values.front()}) ||
        !selects(document, "line[2]/label", {values[1]})) {
        fail(state, "other results");
    }
    countItems(state, static_cast<long>(paths.size()));
}

void selectByFloor(benchmark::State& state, char const* path,
                   std::vector<PhoneValue const*> const& expected) {
    PhoneData const& phone = phoneData(sizeOf(state));
    std::unique_ptr<FloorNode> const tree = floorTree(phone.schema());
    FloorDocument document(*tree, phone);
    for (auto _ : state) keep(floorSelect(document, path));
    if (!selects(document, path, expected)) fail(state, "other results");
    countItems(state, static_cast<long>(expected.size()));
}

void selectManyByFloor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    selectByFloor(state, "line/label", valuesOf(phone, phone.node(kManyLabels)));
}

void selectDeepByFloor(benchmark::State& state) {
    selectByFloor(state, "//label", valuesCalled(phoneData(sizeOf(state)), "label"));
}

[[maybe_unused]] auto* const one =
    addWorkload("SelectOne", "floor", selectOneByFloor, phoneSizes());
[[maybe_unused]] auto* const many =
    addWorkload("SelectMany", "floor", selectManyByFloor, phoneSizes());
[[maybe_unused]] auto* const deep =
    addWorkload("SelectDeep", "floor", selectDeepByFloor, phoneSizes());

} // namespace
} // namespace bench
