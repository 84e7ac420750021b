// The floors of many distinct names: expat over the definition and over the document; a name in a
// hash table, looked up between take and give of a semaphore.

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "bench/accesses.h"
#include "bench/expat_pass.h"
#include "bench/floor_store.h"
#include "bench/phone_schema.h"
#include "bench/shapes.h"
#include "bench/stopwatch.h"
#include "bench/workload.h"

namespace bench {
namespace {

void parse(benchmark::State& state, std::string const& text) {
    ExpatPass expat;
    bool good = true;
    for (auto _ : state) {
        Stopwatch const watch(state);
        good &= expat.parse(text);
    }
    if (!good) fail(state, expat.error());
    countItems(state, sizeOf(state));
}

void parseDefinitionByFloor(benchmark::State& state) {
    parse(state, definitionOf(*wideSchema(sizeOf(state))));
}

void parseDocumentByFloor(benchmark::State& state) {
    parse(state, PhoneData(wideSchema(sizeOf(state))).document());
}

using Names = std::unordered_map<std::string_view, PhoneNode const*>;

[[gnu::noinline]] PhoneNode const* find(sem_t& lock, Names const& names, char const* name) {
    FloorLock const held(lock);
    auto const found = names.find(name);
    return found == names.end() ? nullptr : found->second;
}

void findByFloor(benchmark::State& state) {
    std::unique_ptr<PhoneNode> const tree = wideSchema(sizeOf(state));
    Names nodes;
    for (std::unique_ptr<PhoneNode> const& node : tree->children.front()->children) {
        nodes.emplace(node->name, node.get());
    }
    std::vector<std::string> const names = numberedPaths("setting", sizeOf(state));
    sem_t lock;
    sem_init(&lock, 0, 1);
    PhoneNode const* found = nullptr;
    for (auto _ : state) {
        for (std::string const& name : names) {
            found = find(lock, nodes, name.c_str());
            keep(found);
        }
    }
    if (!found || found->name != names.back()) fail(state, "another node");
    countItems(state, static_cast<long>(names.size()));
}

std::vector<int> const sizes = {1000, 10000};

[[maybe_unused]] auto* const definition =
    addWorkload("WideDefinition", "floor", parseDefinitionByFloor, sizes) -> UseManualTime();
[[maybe_unused]] auto* const document =
    addWorkload("WideImport", "floor", parseDocumentByFloor, sizes) -> UseManualTime();
[[maybe_unused]] auto* const names = addWorkload("WideFind", "floor", findByFloor, sizes);

} // namespace
} // namespace bench
