// One large document of numbers: making it (and deleting it), reading all over it, and exporting it
// with a hundred values changed. An item is a cell, or a read; its cost must not grow.

#include <memory>
#include <string>

#include "bench/accesses.h"
#include "bench/shapes.h"
#include "bench/workload.h"
#include "zor/collection.h"

namespace bench {
namespace {

constexpr long kDefault = 7;

void makeByZor(benchmark::State& state) {
    ZorCollection store("store");
    ZorSchema* const schema = buildSchema(store, *largeSchema(sizeOf(state)));
    for (auto _ : state) {
        keep(store.makeDocument("schema", "document"));
        store.deleteDocument("document");
    }
    if (schema->rootNode->countRequiredValueNodes() != sizeOf(state)) fail(state, "other cells");
    countItems(state, sizeOf(state));
}

void readByZor(benchmark::State& state) {
    ZorCollection store("store");
    ZorSchema* const schema = buildSchema(store, *largeSchema(sizeOf(state)));
    ZorDocument* const document = store.makeDocument("schema", "document");
    std::vector<ZorSchemaNode*> nodes;
    ZorSchemaNode* const row = schema->rootNode->getFirstChildNode();
    for (ZorSchemaNode* node = row->getFirstChildNode(); node; node = node->getNextNode()) {
        nodes.push_back(node);
    }
    std::vector<int> const order = shuffled(sizeOf(state) / static_cast<int>(nodes.size()));
    long sum = 0;
    for (auto _ : state) {
        sum = 0;
        for (int const i : order) {
            for (ZorSchemaNode* const node : nodes)
                sum += document->getIntNodeValue(node, i, nullptr);
        }
        keep(sum);
    }
    auto const reads = static_cast<long>(order.size() * nodes.size());
    if (sum != kDefault * reads) fail(state, "other numbers");
    countItems(state, reads);
}

void exportByZor(benchmark::State& state) {
    constexpr int kChanged = 100;
    ZorCollection store("store");
    ZorSchema* const schema = buildSchema(store, *largeSchema(sizeOf(state)));
    ZorDocument* const document = store.makeDocument("schema", "document");
    ZorSchemaNode* const node = schema->rootNode->getFirstChildNode()->getFirstChildNode();
    long const apart = node->getTotalOccurrences() / kChanged; // 1 at least
    for (int i = 0; i < kChanged; ++i) document->setIntNodeValue(node, i * apart, i);
    std::string text;
    for (auto _ : state) text = store.exportDocument("document");
    int values = 0;
    for (std::size_t at = 0; (at = text.find("</item0>", at)) != std::string::npos; ++at) ++values;
    if (values != kChanged) fail(state, "other values");
    countItems(state, sizeOf(state));
}

std::vector<int> const sizes = {1000, 100000, 1000000};

[[maybe_unused]] auto* const make = addWorkload("LargeMake", "zor", makeByZor, sizes);
[[maybe_unused]] auto* const read = addWorkload("LargeRead", "zor", readByZor, sizes);
[[maybe_unused]] auto* const few = addWorkload("LargeExportFew", "zor", exportByZor, sizes);

} // namespace
} // namespace bench
