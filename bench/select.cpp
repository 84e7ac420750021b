// Select: one line's label, every line's label, and every label at any depth. An item is a result;
// to free the results is measured, too.

#include <cstring>
#include <memory>
#include <string>

#include "bench/accesses.h"
#include "bench/workload.h"
#include "bench/zor_phone.h"

namespace bench {
namespace {

bool isResult(ZorResultPointer const& result, PhoneValue const& value) {
    return value.node->name == result.node->getName() && result.flat == value.flat &&
           result.node->getTotalOccurrences() == value.node->total &&
           result.occurrence + 1 == value.path.back().occurrence;
}

// Whether the path selects just those values, in this order.
bool selects(ZorDocument& document, char const* path,
             std::vector<PhoneValue const*> const& values) {
    std::unique_ptr<ZorResultSet> const found(document.select(path));
    if (found->getResultCount() != values.size()) return false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!isResult(*found->results[i], *values[i])) return false;
    }
    return true;
}

void selectOneByZor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    ZorPhone zor(phone);
    ZorDocument& document = zor.document();
    PhoneNode const& label = phone.node(kManyLabels);
    std::vector<std::string> const paths = pathsToLabels(label.total);
    for (auto _ : state) {
        for (std::string const& path : paths) delete document.select(path.c_str());
    }
    std::vector<PhoneValue const*> const values = valuesOf(phone, label);
    if (!selects(document, "line[1]/label", {values.front()}) ||
        !selects(document, "line[2]/label", {values[1]}) ||
        !selects(document, paths.back().c_str(),
                 {values[static_cast<std::size_t>(shuffled(label.total).back())]})) {
        fail(state, "other results");
    }
    countItems(state, static_cast<long>(paths.size()));
}

void selectByZor(benchmark::State& state, char const* path,
                 std::vector<PhoneValue const*> const& expected) {
    ZorPhone zor(phoneData(sizeOf(state)));
    ZorDocument& document = zor.document();
    for (auto _ : state) delete document.select(path);
    if (!selects(document, path, expected)) fail(state, "other results");
    countItems(state, static_cast<long>(expected.size()));
}

void selectManyByZor(benchmark::State& state) {
    PhoneData const& phone = phoneData(sizeOf(state));
    selectByZor(state, "line/label", valuesOf(phone, phone.node(kManyLabels)));
}

void selectDeepByZor(benchmark::State& state) {
    selectByZor(state, "//label", valuesCalled(phoneData(sizeOf(state)), "label"));
}

[[maybe_unused]] auto* const one = addWorkload("SelectOne", "zor", selectOneByZor, phoneSizes());
[[maybe_unused]] auto* const many = addWorkload("SelectMany", "zor", selectManyByZor, phoneSizes());
[[maybe_unused]] auto* const deep = addWorkload("SelectDeep", "zor", selectDeepByZor, phoneSizes());

} // namespace
} // namespace bench
