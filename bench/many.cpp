// Many schemas with a thousand documents each, in one store: making the documents, and finding them
// by name. The store's maps have 256 buckets, so that the walk along one grows with the number. An
// item is a document.

#include <memory>
#include <string>

#include "bench/accesses.h"
#include "bench/stopwatch.h"
#include "bench/workload.h"
#include "zor/collection.h"

namespace bench {
namespace {

constexpr int kDocumentsEach = 1000;

std::vector<std::string> numbered(char const* name, int count) {
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) names.push_back(name + std::to_string(i));
    return names;
}

std::vector<std::string> documentNames(int count) { return numbered("document", count); }

std::vector<std::string> schemaNames(int documents) {
    return numbered("schema", documents / kDocumentsEach);
}

std::unique_ptr<ZorCollection> makeStore(int documents) {
    auto store = std::make_unique<ZorCollection>("store");
    for (std::string const& name : schemaNames(documents)) {
        ZorSchema* const schema = store->makeSchema(name.c_str());
        schema->makeDataNode(schema->rootNode, "number", 1, schema->getDataType("int"), "7");
    }
    return store;
}

void makeDocuments(ZorCollection& store, std::vector<std::string> const& names,
                   std::vector<std::string> const& schemas) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        store.makeDocument(schemas[i / kDocumentsEach].c_str(), names[i].c_str());
    }
}

void makeByZor(benchmark::State& state) {
    std::vector<std::string> const names = documentNames(sizeOf(state));
    std::vector<std::string> const schemas = schemaNames(sizeOf(state));
    std::unique_ptr<ZorCollection> store;
    for (auto _ : state) {
        store = makeStore(sizeOf(state));
        Stopwatch const watch(state);
        makeDocuments(*store, names, schemas);
    }
    if (store->getSchema(schemas.back().c_str())->documentCount() != kDocumentsEach) {
        fail(state, "other documents");
    }
    countItems(state, sizeOf(state));
}

void findByZor(benchmark::State& state) {
    std::unique_ptr<ZorCollection> const store = makeStore(sizeOf(state));
    makeDocuments(*store, documentNames(sizeOf(state)), schemaNames(sizeOf(state)));
    std::vector<std::string> const names = numberedPaths("document", sizeOf(state));
    ZorDocument* found = nullptr;
    for (auto _ : state) {
        for (std::string const& name : names) {
            found = store->getDocument(name.c_str());
            keep(found);
        }
    }
    if (!found || names.back() != found->getName()) fail(state, "another document");
    countItems(state, static_cast<long>(names.size()));
}

std::vector<int> const sizes = {1000, 10000, 100000};

[[maybe_unused]] auto* const make =
    addWorkload("ManyMake", "zor", makeByZor, sizes) -> UseManualTime();
[[maybe_unused]] auto* const find = addWorkload("ManyFind", "zor", findByZor, sizes);

} // namespace
} // namespace bench
