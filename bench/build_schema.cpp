// Building a schema: through the API, and from its definition; of any number of nodes in three
// levels, and a telephone's. To destroy it is not measured. An item is a node.

#include "bench/phone_schema.h"
#include "bench/shapes.h"
#include "bench/stopwatch.h"
#include "bench/workload.h"
#include "zor/collection.h"

namespace bench {
namespace {

void buildByZor(benchmark::State& state) {
    std::unique_ptr<PhoneNode> const tree = schemaOf(sizeOf(state));
    ZorCollection store("store");
    ZorSchema* schema = nullptr;
    for (auto _ : state) {
        store.deleteSchema(tree->name.c_str());
        Stopwatch const watch(state);
        schema = buildSchema(store, *tree);
    }
    if (!schema || !isSameTree(*schema->rootNode, *tree)) fail(state, "another tree");
    countItems(state, nodesBelow(*tree));
}

void importTree(benchmark::State& state, PhoneNode const& tree) {
    std::string const definition = definitionOf(tree);
    ZorCollection store(PhoneData::kRoot);
    for (auto _ : state) {
        store.deleteSchema(tree.name.c_str());
        Stopwatch const watch(state);
        store.importXML(definition.c_str());
    }
    ZorSchema const* const schema = store.getSchema(tree.name.c_str());
    if (!schema || !isSameTree(*schema->rootNode, tree)) fail(state, "another tree");
    countItems(state, nodesBelow(tree));
}

void importDefinitionByZor(benchmark::State& state) { importTree(state, *schemaOf(sizeOf(state))); }

void importPhoneByZor(benchmark::State& state) {
    importTree(state, phoneData(sizeOf(state)).schema());
}

[[maybe_unused]] auto* const build =
    addWorkload("BuildSchema", "zor", buildByZor, phoneSizes()) -> UseManualTime();
[[maybe_unused]] auto* const import =
    addWorkload("ImportDefinition", "zor", importDefinitionByZor, phoneSizes()) -> UseManualTime();
[[maybe_unused]] auto* const phone =
    addWorkload("PhoneDefinition", "zor", importPhoneByZor, {1000}) -> UseManualTime();

} // namespace
} // namespace bench
