// Many distinct names under one parent: making the nodes, importing their definition and a
// document, and finding a node and a value by name. An item is a name; the cost of one must not
// grow with their number.

#include <memory>
#include <string>

#include "bench/accesses.h"
#include "bench/phone_schema.h"
#include "bench/shapes.h"
#include "bench/stopwatch.h"
#include "bench/workload.h"
#include "zor/collection.h"

namespace bench {
namespace {

void buildByZor(benchmark::State& state) {
    std::unique_ptr<PhoneNode> const tree = wideSchema(sizeOf(state));
    ZorCollection store("store");
    ZorSchema* schema = nullptr;
    for (auto _ : state) {
        store.deleteSchema("schema");
        Stopwatch const watch(state);
        schema = buildSchema(store, *tree);
    }
    if (!schema || !isSameTree(*schema->rootNode, *tree)) fail(state, "another tree");
    countItems(state, sizeOf(state));
}

void importDefinitionByZor(benchmark::State& state) {
    std::unique_ptr<PhoneNode> const tree = wideSchema(sizeOf(state));
    std::string const definition = definitionOf(*tree);
    ZorCollection store(PhoneData::kRoot);
    for (auto _ : state) {
        store.deleteSchema("schema");
        Stopwatch const watch(state);
        store.importXML(definition.c_str());
    }
    if (!isSameTree(*store.getSchema("schema")->rootNode, *tree)) fail(state, "another tree");
    countItems(state, sizeOf(state));
}

void importByZor(benchmark::State& state) {
    PhoneData const data(wideSchema(sizeOf(state)));
    ZorCollection store(PhoneData::kRoot);
    store.importXML(data.definition().c_str());
    for (auto _ : state) {
        store.deleteDocument(PhoneData::kDocument);
        Stopwatch const watch(state);
        store.importXML(data.document().c_str());
    }
    if (store.exportDocument(PhoneData::kDocument) != data.document()) fail(state, "other values");
    countItems(state, data.values());
}

void findByZor(benchmark::State& state) {
    PhoneData const data(wideSchema(sizeOf(state)));
    ZorCollection store(PhoneData::kRoot);
    store.importXML(data.definition().c_str());
    ZorSchema* const schema = store.getSchema("schema");
    ZorSchemaNode* const branch = schema->rootNode->getFirstChildNode();
    std::vector<std::string> const names = numberedPaths("setting", sizeOf(state));
    ZorSchemaNode* found = nullptr;
    for (auto _ : state) {
        for (std::string const& name : names) {
            found = schema->getChildNode(branch, name.c_str());
            keep(found);
        }
    }
    if (!found || names.back() != found->getName()) fail(state, "another node");
    countItems(state, static_cast<long>(names.size()));
}

void selectByZor(benchmark::State& state) {
    PhoneData const data(wideSchema(sizeOf(state)));
    ZorCollection store(PhoneData::kRoot);
    store.importXML(data.definition().c_str());
    ZorDocument* const document = store.makeDocument("schema", "document");
    std::vector<std::string> const paths = numberedPaths("settings/setting", sizeOf(state));
    for (auto _ : state) {
        for (std::string const& path : paths) delete document->select(path.c_str());
    }
    std::unique_ptr<ZorResultSet> const last(document->select(paths.back().c_str()));
    if (last->getResultCount() != 1) fail(state, "other results");
    countItems(state, static_cast<long>(paths.size()));
}

std::vector<int> const sizes = {1000, 10000};

[[maybe_unused]] auto* const build =
    addWorkload("WideBuild", "zor", buildByZor, sizes) -> UseManualTime();
[[maybe_unused]] auto* const definition =
    addWorkload("WideDefinition", "zor", importDefinitionByZor, sizes) -> UseManualTime();
[[maybe_unused]] auto* const import =
    addWorkload("WideImport", "zor", importByZor, sizes) -> UseManualTime();
[[maybe_unused]] auto* const find = addWorkload("WideFind", "zor", findByZor, sizes);
[[maybe_unused]] auto* const select = addWorkload("WideSelect", "zor", selectByZor, sizes);

} // namespace
} // namespace bench
